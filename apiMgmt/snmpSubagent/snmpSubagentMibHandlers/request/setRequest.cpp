#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/setRequest.h"

#include <algorithm>
#include <deque>
#include <string>
#include <string_view>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/apiAccess.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/oidLookup.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/requestContext.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapVariables.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/oidFormatter.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

namespace {

// True for the system group and forceTrapCommand. All other writable columns accept only one keyword.
bool accepts_any_string(int col_id) {
    return col_id < COLID_productName || col_id > COLID_trapActionText;
}

bool is_acceptable_string(int col_id) {
    static constexpr std::string_view kForceTrap = "ForceTrap";
    if (accepts_any_string(col_id))
        return true;
    return current_requestvb->val_len == kForceTrap.size() &&
           std::equal(kForceTrap.begin(), kForceTrap.end(), current_requestvb->val.string);
}

int32_t reject_set(int error, int col_id) {
    snmpErr = error;
    set_current_request_error(error);
    SUBAGENT_LOG(debug, "failed for reserve1: col-id: %d\n", col_id);
    return -1;
}

constexpr int kArrayApiIndex = 1;

struct queued_set {
    int32_t var_index;
    const char* attribute;
    std::string value;
};

std::deque<queued_set> queued_sets;  // at most one per variable

int queue_array_attribute(const char* attribute, int32_t var_index) {
    const auto same = std::ranges::find(queued_sets, var_index, &queued_set::var_index);
    if (same != queued_sets.end())
        same->value = vars[var_index].str;
    else
        queued_sets.push_back({var_index, attribute, vars[var_index].str});
    return 0;
}

}  // namespace

int32_t process_reserve1() {
    const int32_t var_index = get_index_of_oid(current_requestvb->name, current_requestvb->name_length);
    if (var_index < 0) {
        SUBAGENT_LOG(debug, "could not find index for oid: current_requestvb->name: %s\n",
                     oid_text(current_requestvb->name, current_requestvb->name_length).c_str());
        return reject_set(SNMP_ERR_NOSUCHNAME, -1);
    }
    const int col_id = vars[var_index].col_id;
    if (!is_cached(var_index)) {
        SUBAGENT_LOG(debug, "oid is not cached: col-id: %d\n", col_id);
        return reject_set(SNMP_ERR_NOSUCHNAME, col_id);
    }
    if (cols[col_id].set_fn == nullptr) {
        SUBAGENT_LOG(debug, "no Set handler defined: col-id: %d\n", col_id);
        return reject_set(SNMP_ERR_NOTWRITABLE, col_id);
    }
    if (cols[col_id].data_type != SMI_BASETYPE_OCTET_STRING) {
        SUBAGENT_LOG(debug, "data_type is not string: col-id: %d\n", col_id);
        return reject_set(SNMP_ERR_WRONGTYPE, col_id);
    }
    if (!is_acceptable_string(col_id)) {
        SUBAGENT_LOG(debug, "string is not 'ForceTrap': col-id: %d\n", col_id);
        return reject_set(SNMP_ERR_BADVALUE, col_id);
    }
    if (!accepts_any_string(col_id))
        note_forced_trap();
    return var_index;
}

int process_commitset(int32_t var_index) {
    variable_entry& entry = vars[var_index];
    const column_record& column = cols[entry.col_id];
    switch (column.data_type) {
        case SMI_BASETYPE_OCTET_STRING:
            entry.str.assign(reinterpret_cast<const char*>(current_requestvb->val.string),
                             current_requestvb->val_len);
            return column.set_fn(var_index);
        case SMI_BASETYPE_UNKNOWN:
            SUBAGENT_LOG(warning, "got SMI_BASETYPE_UNKNOWN on registered OID\n");
            return 1;
        case SMI_BASETYPE_INTEGER32:
        case SMI_BASETYPE_OBJECT_IDENTIFIER:
        case SMI_BASETYPE_UNSIGNED32:
        case SMI_BASETYPE_INTEGER64:
        case SMI_BASETYPE_UNSIGNED64:
        case SMI_BASETYPE_ENUM:
        case SMI_BASETYPE_BITS:
        case SMI_BASETYPE_POINTER:
            SUBAGENT_LOG(warning, "this data type is not yet coded for: %d, col-id: %d\n",
                         static_cast<int>(column.data_type), entry.col_id);
            return 1;
        default:
            SUBAGENT_LOG(warning, "unknown data type: %d, col-id: %d\n", static_cast<int>(column.data_type),
                         entry.col_id);
            return 1;
    }
}

int sysContact_set(int32_t var_index) {
    return queue_array_attribute("Contact", var_index);
}

int sysName_set(int32_t var_index) {
    return queue_array_attribute("Name", var_index);
}

int sysLocation_set(int32_t var_index) {
    return queue_array_attribute("Location", var_index);
}

void perform_queued_set() {
    if (queued_sets.empty())
        return;
    const queued_set set = std::move(queued_sets.front());
    queued_sets.pop_front();
    // A refresh since the SET may have restored the array's old value.
    vars[set.var_index].str = set.value;
    const column_record& column = cols[vars[set.var_index].col_id];
    // The response is ignored, because the next refresh undoes a change that the array rejects.
    std::string response;
    if (AccessApi("Tessera", response, kArrayApiIndex, set.attribute, set.value) != 0)
        SUBAGENT_LOG(warning, "SET failed at %s0: no valid response from the API manager\n",
                     oid_text(column.oid_ptr, column.oid_len).c_str());
}
