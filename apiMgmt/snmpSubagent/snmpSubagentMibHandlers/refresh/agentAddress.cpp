#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/agentAddress.h"

#include "apiMgmt/snmpSubagent/snmpSubagentMain/settings/subagentConf.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"

namespace {

// Returns the variable of a row (from 1) if it is cached, else null.
const variable_entry* cached_row(int col_id, int row) {
    const int32_t var_index = cols[col_id].first_var + row - 1;
    return is_cached(var_index) ? &vars[var_index] : nullptr;
}

bool is_address(const variable_entry* entry) {
    return entry != nullptr && !entry->str.empty() && entry->str[0] != '0';
}

bool is_set(const variable_entry* number) {
    return number != nullptr && number->uint != 0;
}

}  // namespace

int get_array_ip_addr(std::string* address, bool* is_leader, bool* is_ipv4) {
    *is_leader = false;
    *is_ipv4 = false;
    const int own_row = conf_controllerIndexThis;
    if (own_row != 0) {
        const variable_entry* leader = cached_row(COLID_tsCtlrLeader, own_row);
        *is_leader = leader != nullptr && leader->uint == 1;
    }
    if (const variable_entry* management = cached_row(COLID_tsTsMgmtIp, 1); is_address(management)) {
        *is_ipv4 = true;
        *address = management->str;
        return 0;
    }
    if (is_set(cached_row(COLID_tsTsIPv6MgmtPrefix, 1))) {
        *address = vars[cols[COLID_tsTsIPv6MgmtIp].first_var].str;
        return 0;
    }
    if (const variable_entry* own = cached_row(COLID_tsCtlrIpAddr, own_row == 0 ? 1 : own_row);
        is_address(own)) {
        *is_ipv4 = true;
        *address = own->str;
        return 0;
    }
    if (is_set(cached_row(COLID_tsCtlrIPv6Prefix, 1))) {
        *address = vars[cols[COLID_tsCtlrIPv6Addr].first_var].str;
        return 0;
    }
    return 1;
}
