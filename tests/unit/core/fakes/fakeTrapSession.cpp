#include "tests/unit/core/fakes/fakeTrapSession.h"

#include <arpa/inet.h>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapSession.h"
#include "tests/unit/core/fakes/mibWorld.h"
#include "tests/unit/core/fakes/snmpPdu.h"
#include "tests/unit/core/fakes/transcript.h"

namespace fake_traps {

std::map<std::string, int> numeric{{"192.0.2.9", AF_INET}};
std::map<std::string, int> names;
failure failing = failure::none;
bool has_master_agent = false;

}  // namespace fake_traps

namespace {

using std::string;

netsnmp_transport transport_of_test;
netsnmp_session session_of_test;
string peer_and_community;

string kind_text(const netsnmp_pdu& pdu) {
    switch (pdu.command) {
        case SNMP_MSG_TRAP: {
            char address[INET_ADDRSTRLEN];
            inet_ntop(AF_INET, pdu.agent_addr, address, sizeof address);
            return "trap enterprise=" + text_of(pdu.enterprise, pdu.enterprise_length) + " agent=" + address +
                   " generic=" + std::to_string(pdu.trap_type) +
                   " specific=" + std::to_string(pdu.specific_type) + " time=" + std::to_string(pdu.time);
        }
        case SNMP_MSG_TRAP2:
            return "trap2";
        case SNMP_MSG_INFORM:
            return "inform";
        default:
            return "command " + std::to_string(pdu.command);
    }
}

void add_notification(string lines, const netsnmp_variable_list* variables) {
    for (const netsnmp_variable_list* each = variables; each != nullptr; each = each->next_variable)
        lines += "\n  " + text_of(each->name, each->name_length) + " " + text_of_value(*each);
    transcript::add(lines);
}

}  // namespace

int address_family_of(const string& host, bool numeric_only) {
    for (const auto* hosts :
         {&fake_traps::numeric, numeric_only ? &fake_traps::numeric : &fake_traps::names}) {
        if (const auto found = hosts->find(host); found != hosts->end())
            return found->second;
    }
    return AF_UNSPEC;
}

netsnmp_transport* open_trap_transport(const char* /*peername*/) {
    return fake_traps::failing == fake_traps::failure::transport ? nullptr : &transport_of_test;
}

netsnmp_session* open_trap_session(long version, const char* peername, const char* community,
                                   netsnmp_transport* transport) {
    EXPECT_EQ(transport, &transport_of_test);
    if (fake_traps::failing == fake_traps::failure::session)
        return nullptr;
    session_of_test.version = version;
    peer_and_community = string(peername) + " " + community;
    return &session_of_test;
}

int send_trap_pdu(netsnmp_session* session, netsnmp_pdu* pdu) {
    EXPECT_EQ(session, &session_of_test);
    if (fake_traps::failing == fake_traps::failure::send)
        return 0;
    add_notification("notify " + string(session->version == SNMP_VERSION_1 ? "1" : "2c") + " " +
                         peer_and_community + " " + kind_text(*pdu),
                     pdu->variables);
    snmp_free_pdu(pdu);
    return 1;
}

trap_send_error last_trap_send_error(netsnmp_session* /*session*/) {
    return {.number = -7, .text = "no way"};
}

void close_trap_session(netsnmp_session* session) {
    EXPECT_EQ(session, &session_of_test);
    transcript::add("close session");
}

bool has_master_agent() {
    return fake_traps::has_master_agent;
}

bool notify_master_agent(netsnmp_variable_list* variables) {
    add_notification("notify master agent", variables);
    return true;
}

long trap_uptime() {
    return 123456;
}
