#include <algorithm>
#include <string_view>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/oidLookup.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/requestHandler.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapVariables.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

// The phases of a SET that do something: what may be written is settled in RESERVE1 and once more before the
// value is stored in COMMIT.

namespace {

// The system group and forceTrapCommand. Every other column that can be set takes one word only.
bool takes_any_text(int col_id) {
    return col_id < COLID_productName || col_id > COLID_trapActionText;
}

bool is_acceptable_text(int col_id) {
    static constexpr std::string_view kForceTrap = "ForceTrap";
    if (takes_any_text(col_id))
        return true;
    return current_requestvb->val_len == kForceTrap.size() &&
           std::equal(kForceTrap.begin(), kForceTrap.end(), current_requestvb->val.string);
}

int32_t refuse_set(int error, int col_id) {
    snmpErr = error;
    set_current_request_error(error);
    SUBAGENT_LOG(7, "failed for reserve1: col-id: %d\n", col_id);
    return -1;
}

}  // namespace

int32_t SnmpSubagentMibHandlers::process_reserve1() {
    const int32_t var_index = get_index_of_oid(current_requestvb->name, current_requestvb->name_length);
    if (var_index < 0) {
        SUBAGENT_LOG(7, "could not find index for oid: current_requestvb->name: %s\n",
                     oid_text(current_requestvb->name, current_requestvb->name_length).c_str());
        return refuse_set(SNMP_ERR_NOSUCHNAME, -1);
    }
    const int col_id = vars[var_index].col_id;
    if (!is_cached(var_index)) {
        SUBAGENT_LOG(7, "oid is not cached: col-id: %d\n", col_id);
        return refuse_set(SNMP_ERR_NOSUCHNAME, col_id);
    }
    if (cols[col_id].set_fn == nullptr) {
        SUBAGENT_LOG(7, "no Set handler defined: col-id: %d\n", col_id);
        return refuse_set(SNMP_ERR_NOTWRITABLE, col_id);
    }
    if (cols[col_id].data_type != SMI_BASETYPE_OCTET_STRING) {
        SUBAGENT_LOG(7, "data_type is not string: col-id: %d\n", col_id);
        return refuse_set(SNMP_ERR_WRONGTYPE, col_id);
    }
    if (!is_acceptable_text(col_id)) {
        SUBAGENT_LOG(7, "string is not 'ForceTrap': col-id: %d\n", col_id);
        return refuse_set(SNMP_ERR_BADVALUE, col_id);
    }
    if (!takes_any_text(col_id))
        note_forced_trap();
    return var_index;
}

int SnmpSubagentMibHandlers::process_commitset(int32_t var_index) {
    variable_entry& entry = vars[var_index];
    const column_record& column = cols[entry.col_id];
    switch (column.data_type) {
        case SMI_BASETYPE_OCTET_STRING:
            entry.str.assign(reinterpret_cast<const char*>(current_requestvb->val.string),
                             current_requestvb->val_len);
            return column.set_fn(var_index);
        case SMI_BASETYPE_UNKNOWN:
            SUBAGENT_LOG(4, "got SMI_BASETYPE_UNKNOWN on registered OID\n");
            return 1;
        case SMI_BASETYPE_INTEGER32:
        case 3:
        case SMI_BASETYPE_UNSIGNED32:
        case 5:
        case 6:
        case SMI_BASETYPE_ENUM:
        case 11:
        case 12:
            SUBAGENT_LOG(4, "this data type is not yet coded for: %d, col-id: %d\n",
                         static_cast<int>(column.data_type), entry.col_id);
            return 1;
        default:
            SUBAGENT_LOG(4, "unknown data type: %d, col-id: %d\n", static_cast<int>(column.data_type),
                         entry.col_id);
            return 1;
    }
}
