#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapCommand.h"

#include <algorithm>
#include <new>
#include <string_view>

#include "apiMgmt/snmpSubagent/snmpSubagentMain/settings/subagentConf.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/objectTrap.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/sendTrap.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapPdu.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapVariables.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibColumns.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/trapCatalogue.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

namespace {

constexpr int32_t kColdStart = 0;
constexpr int32_t kTestTrap = 200;
constexpr int32_t kMiscAlert = 201;
constexpr int32_t kDeviceStatusChange = 213;

bool is_plain(int32_t trapNum) {
    return std::ranges::find(plain_notifications, trapNum) != plain_notifications.end();
}

// A plain notification carries the string after a leading " @@@", and none if that is missing.
std::string message_of(const std::string& alertString) {
    static constexpr std::string_view kMessageMark = " @@@";
    return alertString.starts_with(kMessageMark) ? alertString.substr(kMessageMark.size()) : "";
}

int send_misc_alert(const TrapToSend& trap) {
    write_trap_text(trapMiscAlertText, COLID_trapMiscAlertText, trap.alertString);
    return send_notification(kMiscAlert);
}

int dispatch(TrapToSend& trap, bool recheck) {
    if (trap.trapNum == kColdStart)
        return Send_a_Trap(trap.trapNum, "", 0, kTrapTypeColdStart);
    if (is_plain(trap.trapNum))
        return Send_a_Trap(trap.trapNum, message_of(trap.alertString), 0, kTrapTypeEnterprise);
    if (trap.trapNum == kTestTrap)
        return send_notification(kTestTrap);
    if (trap.trapNum == kMiscAlert)
        return send_misc_alert(trap);
    if (trap.trapNum == kDeviceStatusChange)
        return send_device_trap(trap);
    const notification_definition* notification = find_notification(trap.trapNum);
    if (notification == nullptr)
        return reject_trap("unknown trapNum passed fron lumivant-app: %d", {trap.trapNum});
    if (*notification->object->not_up != '\0')
        return send_component_trap(*notification, trap, recheck);
    return send_object_trap(*notification, trap, recheck);
}

}  // namespace

int processSendTrapCmd(TrapToSend& trap, bool recheck) {
    if (!recheck)
        SUBAGENT_LOG(
            debug,
            "%d,%d,%d: trapNum: %d, trapArgA: %d, trapArgB: %d, trapArgC: %d, trapArgD: %d, alertString: "
            "%s\n",
            trap.eventIdA, trap.eventIdB, trap.eventIdC, trap.trapNum, trap.trapArgA, trap.trapArgB,
            trap.trapArgC, trap.trapArgD, trap.alertString.c_str());
    const trap_command_in_hand in_hand;
    prepare_trap_variables(trap);
    return dispatch(trap, recheck);
}

void send_coldstart() {
    if (!conf_trapsEnabled)
        return;
    std::unique_ptr<TrapToSend> trap(new (std::nothrow) TrapToSend);
    if (trap == nullptr) {
        SUBAGENT_LOG(warning, "send_coldstart: Failed to malloc pTrapToSend\n");
        return;
    }
    SUBAGENT_LOG(debug, "generate coldstart trap\n");
    trap->eventIdA = trap->eventIdB = trap->eventIdC = 4;
    queue_trap(std::move(trap));
}

void send_test_trap() {
    SUBAGENT_LOG(debug, "generate a test-trap\n");
    TrapToSend trap;
    trap.eventIdA = 28;
    trap.trapNum = kTestTrap;
    processSendTrapCmd(trap, false);
}
