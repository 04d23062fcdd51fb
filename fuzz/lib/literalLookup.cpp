#include "fuzz/lib/literalLookup.h"

#include <algorithm>

#include "apiMgmt/snmpSubagent/snmpSubagentUtil/netSnmpHeaders.h"

namespace literal_lookup {
namespace {

int compare(int col_id, const name_type& name) {
    return snmp_oidtree_compare(cols[col_id].oid_ptr, cols[col_id].oid_len, name.data(), name.size());
}

int32_t if_cached(int64_t index) {
    return is_cached(static_cast<int32_t>(index)) ? static_cast<int32_t>(index) : -1;
}

}  // namespace

int32_t exact(const name_type& name) {
    int c = 0;
    while (c < NUMBER_OF_COLUMNS && compare(c, name) < 0)
        ++c;
    if (c == NUMBER_OF_COLUMNS || compare(c, name) > 0)
        return -1;
    const column_record& column = cols[c];
    const size_t length = name.size();
    if ((column.col_flags & 1) == 0)
        return length == column.oid_len + 1U && name.back() == 0 ? if_cached(column.first_var) : -1;
    if (column.col_flags == 1) {
        if (length != column.oid_len + 1U || name.back() == 0 || name.back() > column.maxNumOfRows)
            return -1;
        return if_cached(column.first_var + static_cast<int64_t>(name.back()) - 1);
    }
    if (length != column.oid_len + 2U)
        return -1;
    const oid row = name.back();
    const oid parent = name[length - 2];
    if (row == 0 || parent == 0 || row > column.maxNumOfRows || parent > column.maxNumOfParents)
        return -1;
    return if_cached(column.first_var - 1 + static_cast<int64_t>(row + (parent - 1) * column.maxNumOfRows));
}

int64_t next_candidate(const name_type& name) {
    for (int c = 0; c < NUMBER_OF_COLUMNS; ++c) {
        const int order = compare(c, name);
        const column_record& column = cols[c];
        if (order < 0)
            continue;
        if (order > 0 || name.size() <= column.oid_len)
            return column.first_var;
        if ((column.col_flags & 1) == 0)
            return column.first_var + 1;
        name_type rest(name.begin() + column.oid_len, name.end());
        for (oid& arc : rest)  // the agent library sign-extends large ones
            arc = std::min<oid>(arc, 4294967295);
        if (column.col_flags == 1)
            return column.first_var + static_cast<int64_t>(rest[0]);
        if (rest.size() > 2)
            return -1;
        if (rest.size() == 2)
            return rest[0] == 0 ? column.first_var
                                : column.first_var + static_cast<int64_t>(rest[0] - 1) * column.maxNumOfRows +
                                      static_cast<int64_t>(rest[1]);
        if (rest[0] == 0)
            return column.first_var + column.maxNumOfRows - 1;
        if (rest[0] > column.maxNumOfParents)
            return c + 1 < NUMBER_OF_COLUMNS ? cols[c + 1].first_var : -1;
        // A parent without a row: continue with the next column.
    }
    return -1;
}

}  // namespace literal_lookup
