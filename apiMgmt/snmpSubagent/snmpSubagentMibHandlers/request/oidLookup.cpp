#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/oidLookup.h"

#include <algorithm>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/requestContext.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/oidFormatter.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/netSnmpHeaders.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

oid last_oid[MAX_handled_oidlen + 1];
size_t last_oid_len = 0;
int32_t last_var_index = 0;

namespace {

// The self-test reads this variable every few seconds, which would flood the debug log.
constexpr int32_t kSelfTestIndex = COLID_selfTestVersion;

int compare_column(const column_record& column, const oid* name, size_t name_length) {
    return snmp_oidtree_compare(column.oid_ptr, column.oid_len, name, name_length);
}

// Returns the first column that does not sort before the name; NUMBER_OF_COLUMNS if all do.
int first_column_not_below(const oid* name, size_t name_length) {
    const column_record* found = std::partition_point(
        std::begin(cols), std::end(cols),
        [=](const column_record& column) { return compare_column(column, name, name_length) < 0; });
    return static_cast<int>(found - std::begin(cols));
}

int32_t index_in_table(const column_record& column, const oid* name, size_t name_length) {
    if (name_length <= column.oid_len) {
        SUBAGENT_LOG(debug, "found exact match with base-oid, but base column-oid >= requested oid\n");
        return -1;
    }
    const size_t instance_length = column.has_parent() ? 2 : 1;
    if (name_length != column.oid_len + instance_length) {
        SUBAGENT_LOG(debug, "found exact match with base-oid, but oid too long\n");
        return -1;
    }
    const oid row = name[name_length - 1];
    const oid parent = column.has_parent() ? name[name_length - 2] : 1;
    const oid parents = column.has_parent() ? column.maxNumOfParents : 1;
    if (row == 0 || row > column.maxNumOfRows || parent == 0 || parent > parents) {
        if (column.has_parent())
            SUBAGENT_LOG(debug,
                         "found exact match with base-oid, but one or more seq nums is bad: parent seq: %d, "
                         "row seq: %d\n",
                         static_cast<int>(parent), static_cast<int>(row));
        else
            SUBAGENT_LOG(debug, "found exact match with base-oid, but seq nums is bad: seq: %d\n",
                         static_cast<int>(row));
        return -1;
    }
    const auto index = static_cast<int32_t>(column.first_var + (parent - 1) * column.maxNumOfRows + row - 1);
    if (!is_cached(index)) {
        SUBAGENT_LOG(debug, "found exact match with base-oid, but var not cached\n");
        return -1;
    }
    return index;
}

int32_t index_of_scalar(const column_record& column, const oid* name, size_t name_length) {
    if (name_length == column.oid_len) {
        SUBAGENT_LOG(debug, "found exact match with base-oid, but base column-oid == requested oid\n");
        return -1;
    }
    if (name_length != column.oid_len + 1U || name[name_length - 1] != 0) {
        SUBAGENT_LOG(debug, "found exact match with base-oid, but oid too long\n");
        return -1;
    }
    if (!is_cached(column.first_var)) {
        SUBAGENT_LOG(debug, "found exact match with base-oid, but var not cached: index_of_matched: %d\n",
                     column.first_var);
        return -1;
    }
    return column.first_var;
}

constexpr int64_t kNoCandidate = -1;

// Returns a sub-identifier as a number wide enough for sums. The agent library reads sub-identifiers from
// 2147483648 on as signed numbers, so they are capped at the 32-bit maximum.
int64_t capped_number(oid sub_identifier) {
    constexpr oid kMaximum = 0xFFFFFFFF;
    return static_cast<int64_t>(std::min(sub_identifier, kMaximum));
}

int64_t first_of_column_after(int col_id) {
    return col_id + 1 < NUMBER_OF_COLUMNS ? cols[col_id + 1].first_var : kNoCandidate;
}

// Returns where to search for the next instance, for a name that continues after the OID of a column with
// parents. The result may exceed 32 bits.
int64_t candidate_with_parent(int col_id, const oid* rest, size_t rest_length) {
    const column_record& column = cols[col_id];
    const int64_t rows = column.maxNumOfRows;
    const int64_t parent = capped_number(rest[0]);
    if (rest_length > 2)
        return kNoCandidate;
    if (rest_length == 1)
        return parent == 0 ? column.first_var + rows - 1 : first_of_column_after(col_id);
    if (parent == 0)  // the formula would yield a variable before the column
        return column.first_var;
    return column.first_var + (parent - 1) * rows + capped_number(rest[1]);
}

// Returns where to search for the next instance: possibly in a later column or beyond the store.
int64_t next_candidate(const oid* name, size_t name_length) {
    const int col_id = first_column_not_below(name, name_length);
    if (col_id == NUMBER_OF_COLUMNS) {
        SUBAGENT_LOG(debug, "NOT found match or next\n");
        return kNoCandidate;
    }
    const column_record& column = cols[col_id];
    if (compare_column(column, name, name_length) > 0) {
        SUBAGENT_LOG(debug, "found greater-than match\n");
        return column.first_var;
    }
    SUBAGENT_LOG(debug, "found exact match\n");
    if (name_length <= column.oid_len)
        return column.first_var;
    if (!column.is_table())
        return column.first_var + 1;
    const oid* rest = name + column.oid_len;
    if (!column.has_parent())
        return column.first_var + capped_number(rest[0]);
    return candidate_with_parent(col_id, rest, name_length - column.oid_len);
}

void end_of_view() {
    SUBAGENT_LOG(debug, "failed for get_next()\n");
    set_current_request_error(SNMP_ENDOFMIBVIEW);
    last_resp_was_endofmibview = true;
    snmpErr = SNMP_ERR_NOERROR;
}

}  // namespace

int32_t get_index_of_oid(const oid* name, size_t name_length) {
    const int col_id = first_column_not_below(name, name_length);
    if (col_id == NUMBER_OF_COLUMNS) {
        SUBAGENT_LOG(debug, "could not find index for oid: %s\n", oid_text(name, name_length).c_str());
        return -1;
    }
    const column_record& column = cols[col_id];
    if (compare_column(column, name, name_length) > 0) {
        SUBAGENT_LOG(debug, "found greater-than so search has failed\n");
        return -1;
    }
    return column.is_table() ? index_in_table(column, name, name_length)
                             : index_of_scalar(column, name, name_length);
}

int32_t find_next_index(const oid* name, size_t name_length) {
    const int64_t candidate = next_candidate(name, name_length);
    return candidate == kNoCandidate ? -1 : first_cached_from(candidate);
}

bool is_last_oid(const oid* name, size_t name_length) {
    return name_length == last_oid_len && std::equal(name, name + name_length, last_oid);
}

int32_t get_var_index_from_reginfo() {
    const oid* name = current_requestvb->name;
    const size_t name_length = current_requestvb->name_length;
    if (is_last_oid(name, name_length)) {
        if (last_var_index != kSelfTestIndex)
            SUBAGENT_LOG(debug, "matched previously processed oid\n");
        return last_var_index;
    }
    const int32_t var_index = get_index_of_oid(name, name_length);
    if (var_index < 0) {
        SUBAGENT_LOG(debug, "could not find index for oid: current_requestvb->name: %s\n",
                     oid_text(name, name_length).c_str());
        snmpErr = SNMP_ERR_NOSUCHNAME;
        return -1;
    }
    if (last_var_index != kSelfTestIndex)
        SUBAGENT_LOG(debug, "found match: ret_var_index: %d, col_id: %d, current_requestvb->name: %s\n",
                     var_index, vars[var_index].col_id, oid_text(name, name_length).c_str());
    return var_index;
}

int32_t get_next_oid() {
    const oid* name = current_requestvb->name;
    const size_t name_length = current_requestvb->name_length;
    int32_t var_index;
    if (is_last_oid(name, name_length)) {
        SUBAGENT_LOG(debug, "matched previously processed oid\n");
        var_index = first_cached_from(int64_t{last_var_index} + 1);
    } else {
        var_index = find_next_index(name, name_length);
    }
    if (var_index < 0)
        end_of_view();
    return var_index;
}
