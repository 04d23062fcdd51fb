#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/valueKind.h"

#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

value_kind value_kind_of(int col_id) {
    switch (cols[col_id].data_type) {
        case SMI_BASETYPE_INTEGER32:
        case SMI_BASETYPE_UNSIGNED32:
        case SMI_BASETYPE_ENUM:
        case SMI_BASETYPE_BITS:
            return value_kind::number;
        case SMI_BASETYPE_OCTET_STRING:
            return value_kind::text;
        default:
            return value_kind::none;
    }
}

void log_no_value_kind(int col_id) {
    const uint32_t data_type = cols[col_id].data_type;
    if (data_type == SMI_BASETYPE_UNKNOWN)
        SUBAGENT_LOG(4, "got SMI_BASETYPE_UNKNOWN\n");
    else
        SUBAGENT_LOG(4, "got an unknown data-type: %d\n", static_cast<int>(data_type));
}

bool has_same_value(uint32_t number, const std::string& text, const variable_entry& now) {
    return value_kind_of(now.col_id) == value_kind::text ? text == now.str : number == now.uint;
}
