#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/sendTrap.h"

#include <sys/socket.h>

#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/settings/subagentConf.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/agentAddress.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapPdu.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapSession.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

notification_counts notification_count{};

namespace {

struct trap_version {
    long session_version;
    int command;
};

// The array's address, which notifications of all versions require.
struct array_address {
    std::string text;
    bool is_ipv4 = false;
};

int fail(const char* text) {
    SUBAGENT_LOG(warning, "%s\n", text);
    return 1;
}

int find_version(int trapVer, trap_version* version) {
    switch (trapVer == 0 ? conf_trapVer : trapVer) {
        case 1:
            *version = {SNMP_VERSION_1, SNMP_MSG_TRAP};
            return 0;
        case 2:
            *version = {SNMP_VERSION_2c, SNMP_MSG_TRAP2};
            return 0;
        case 3:
            *version = {SNMP_VERSION_2c, SNMP_MSG_INFORM};
            return 0;
        default:
            return fail("Invalid Trap Type");
    }
}

bool is_internet(int family) {
    return family == AF_INET || family == AF_INET6;
}

int reject_destination(const char* kind) {
    SUBAGENT_LOG(warning, "Invalid %s: %s\n", kind, conf_trapDest.c_str());
    return 1;
}

// Composes the peer name from the destination and the port.
int accept_destination(std::string* peername, const char* before, const char* after) {
    *peername = before + conf_trapDest + after + std::to_string(conf_trapPort);
    return 0;
}

int check_settings(array_address* address) {
    if (conf_trapDest.empty())
        return fail("Unable to send trap because there is no trap destination defined.");
    bool is_leader = false;
    if (get_array_ip_addr(&address->text, &is_leader, &address->is_ipv4) != 0)
        return fail("Unable to get a non-zero IPAddr from the TS API");
    return 0;
}

// Frees the PDU after a failure. A command of 0 means that Net-SNMP has already freed it.
int drop_pdu(netsnmp_pdu* pdu) {
    if (pdu->command == 0)
        return fail("Error: pdu has already been freed");
    snmp_free_pdu(pdu);
    return 1;
}

int report_send_error(netsnmp_session* session, bool is_inform) {
    const trap_send_error error = last_trap_send_error(session);
    SUBAGENT_LOG(warning, "err on snmp_send() for %s: ss->s_snmp_errno=%d, err= %s\n",
                 is_inform ? "Inform" : "Trap-Notify", error.number, error.text.c_str());
    return 1;
}

int send_through(netsnmp_session* session, const trap_version& version, const trap_content& content) {
    netsnmp_pdu* pdu = snmp_pdu_create(version.command);
    if (pdu == nullptr)
        return fail("Failed to create notification PDU");
    if (fill_trap_pdu(pdu, content) != 0)
        return drop_pdu(pdu);
    if (send_trap_pdu(session, pdu) != 0)
        return 0;  // Net-SNMP owns the PDU now
    report_send_error(session, version.command == SNMP_MSG_INFORM);
    return drop_pdu(pdu);
}

// Not logged if there is no link: the main loop notices that itself and restarts the daemon.
int send_through_master_agent(int32_t trapVal, const std::string& msg, int trapType) {
    if (!has_master_agent())
        return 1;
    netsnmp_pdu* pdu = snmp_pdu_create(SNMP_MSG_TRAP2);
    if (pdu == nullptr)
        return fail("Failed to create notification PDU");
    int result = fill_trap_pdu(pdu, {.trapVal = trapVal,
                                     .trapType = trapType,
                                     .msg = msg,
                                     .is_version_1 = false,
                                     .uptime = trap_uptime(),
                                     .agent_ip = nullptr});
    if (result == 0 && !notify_master_agent(pdu->variables))
        result = fail("snmpd does not accept a notification for its receivers: dropped");
    snmp_free_pdu(pdu);
    return result;
}

int send_to_destination(int32_t trapVal, const std::string& msg, int trapVer, int trapType) {
    array_address address;
    trap_version version{};
    std::string peername;
    if (check_settings(&address) != 0 || find_version(trapVer, &version) != 0 ||
        build_trap_peer_name(&peername) != 0)
        return 1;
    SUBAGENT_LOG(debug, "sending trap to peername: %s\n", peername.c_str());
    netsnmp_transport* transport = open_trap_transport(peername.c_str());
    if (transport == nullptr)
        return fail("Unable to open transport client");
    netsnmp_session* session =
        open_trap_session(version.session_version, peername.c_str(), conf_trapCommun.c_str(), transport);
    if (session == nullptr)
        return fail("Unable to open SNMP session");
    const int result = send_through(session, version,
                                    {.trapVal = trapVal,
                                     .trapType = trapType,
                                     .msg = msg,
                                     .is_version_1 = version.session_version == SNMP_VERSION_1,
                                     .uptime = trap_uptime(),
                                     .agent_ip = address.is_ipv4 ? address.text.c_str() : nullptr});
    // An inform is sent like a trap, without waiting for the acknowledgement.
    close_trap_session(session);
    return result;
}

}  // namespace

int Send_a_Trap(int32_t trapVal, const std::string& msg, int trapVer, int trapType) {
    SUBAGENT_LOG(debug, "sending trap: trapVal=%d, msg='%s', trapVer=%d, trapType=%d\n", trapVal, msg.c_str(),
                 trapVer, trapType);
    if (!conf_trapsEnabled)
        return fail("Traps are disabled");
    int result = send_through_master_agent(trapVal, msg, trapType);
    if (conf_trapDest != kNoTrapDest)
        result = send_to_destination(trapVal, msg, trapVer, trapType);
    ++(result == 0 ? notification_count.sent : notification_count.failed);
    return result;
}

int send_notification(int32_t number) {
    return Send_a_Trap(number, "", 0, kTrapTypeEnterprise);
}

int build_trap_peer_name(std::string* peername) {
    const int numeric_family = address_family_of(conf_trapDest, true);
    const bool is_numeric = numeric_family != AF_UNSPEC;
    if (is_numeric && !is_internet(numeric_family))
        return reject_destination("format for trap dest addr");
    if (!is_numeric && address_family_of(conf_trapDest, false) == AF_UNSPEC)
        return reject_destination("trap dest addr");
    if (conf_trapDest.find(':') != std::string::npos) {
        if (numeric_family != AF_INET6)
            return reject_destination("IPv6 trap dest addr");
        return accept_destination(peername, "udp6:[", "]:");
    }
    if (conf_trapDest.find('.') != std::string::npos) {
        if (numeric_family != AF_INET)
            return reject_destination("IPv4 trap dest addr");
        return accept_destination(peername, "udp:", ":");
    }
    if (!is_internet(address_family_of(conf_trapDest, is_numeric)))
        return reject_destination("trap dest addr");
    return accept_destination(peername, "", ":");
}
