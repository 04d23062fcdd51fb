#include <string>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/apiAccess.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/requestHandler.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/forceTrap.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibValues.h"

namespace {

constexpr int kArrayApiIndex = 1;

// The answer is not looked at: a change that the array refuses is undone by the next refresh.
int write_array_attribute(const char* attribute, int32_t var_index) {
    std::string response;
    return AccessApi("Tessera", response, kArrayApiIndex, attribute, vars[var_index].str);
}

}  // namespace

int sysContact_set(int32_t var_index) {
    return write_array_attribute("Contact", var_index);
}

int sysName_set(int32_t var_index) {
    return write_array_attribute("Name", var_index);
}

int sysLocation_set(int32_t var_index) {
    return write_array_attribute("Location", var_index);
}

int forceTrapCommand_set(int32_t var_index) {
    forceTrapCommand = vars[var_index].str;
    set_cached(var_index);
    return ExecuteForceTrap();
}
