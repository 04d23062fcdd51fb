#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/setOperations.h"

#include <algorithm>
#include <deque>
#include <string>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/apiAccess.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/oidLookup.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/forceTrap.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibValues.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

namespace {

constexpr int kArrayApiIndex = 1;

struct queued_set {
    int32_t var_index;
    const char* attribute;
    std::string value;
};

std::deque<queued_set> queued_sets;  // at most one for each variable

int queue_array_attribute(const char* attribute, int32_t var_index) {
    const auto same = std::ranges::find(queued_sets, var_index, &queued_set::var_index);
    if (same != queued_sets.end())
        same->value = vars[var_index].str;
    else
        queued_sets.push_back({var_index, attribute, vars[var_index].str});
    return 0;
}

}  // namespace

int sysContact_set(int32_t var_index) {
    return queue_array_attribute("Contact", var_index);
}

int sysName_set(int32_t var_index) {
    return queue_array_attribute("Name", var_index);
}

int sysLocation_set(int32_t var_index) {
    return queue_array_attribute("Location", var_index);
}

int forceTrapCommand_set(int32_t var_index) {
    forceTrapCommand = vars[var_index].str;
    set_cached(var_index);
    return ExecuteForceTrap();
}

void perform_queued_set() {
    if (queued_sets.empty())
        return;
    const queued_set set = std::move(queued_sets.front());
    queued_sets.pop_front();
    // A refresh since the SET may have brought back the array's old value.
    vars[set.var_index].str = set.value;
    const column_record& column = cols[vars[set.var_index].col_id];
    // The response is not looked at: the next refresh undoes a change that the array rejects.
    std::string response;
    if (AccessApi("Tessera", response, kArrayApiIndex, set.attribute, set.value) != 0)
        SUBAGENT_LOG(4, "SET failed at %s0: the array could not be asked\n",
                     oid_text(column.oid_ptr, column.oid_len).c_str());
}
