#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapSession.h"

#include <netdb.h>

#include <cstdlib>
#include <cstring>

#include "apiMgmt/common/utils/stringUtil.h"

namespace {

constexpr size_t kNameBuffer = 240;

// The template of every session, which refers to the buffers.
netsnmp_session trap_session;
char peername_buffer[kNameBuffer];
char community_buffer[kNameBuffer];

}  // namespace

void init_trap_session() {
    snmp_sess_init(&trap_session);
}

void end_trap_session() {
    snmp_close(&trap_session);
}

int address_family_of(const std::string& host, bool numeric_only) {
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_flags = numeric_only ? AI_NUMERICHOST : 0;
    addrinfo* found = nullptr;
    if (getaddrinfo(host.c_str(), nullptr, &hints, &found) != 0)
        return AF_UNSPEC;
    const int family = found->ai_family;
    freeaddrinfo(found);
    return family;
}

netsnmp_transport* open_trap_transport(const char* peername) {
    return netsnmp_transport_open_client("snmptrap", peername);
}

netsnmp_session* open_trap_session(long version, const char* peername, const char* community,
                                   netsnmp_transport* transport) {
    SafeStrncpy(peername_buffer, peername, sizeof peername_buffer);
    SafeStrncpy(community_buffer, community, sizeof community_buffer);
    trap_session.version = version;
    trap_session.peername = peername_buffer;
    trap_session.community = reinterpret_cast<u_char*>(community_buffer);
    trap_session.community_len = strlen(community_buffer);
    return snmp_add(&trap_session, transport, nullptr, nullptr);
}

int send_trap_pdu(netsnmp_session* session, netsnmp_pdu* pdu) {
    return snmp_send(session, pdu);
}

trap_send_error last_trap_send_error(netsnmp_session* session) {
    int system_error = 0;
    int snmp_error_number = 0;
    char* text = nullptr;
    snmp_error(session, &system_error, &snmp_error_number, &text);
    trap_send_error error{.number = snmp_error_number, .text = text == nullptr ? "" : text};
    free(text);
    return error;
}

void close_trap_session(netsnmp_session* session) {
    snmp_close(session);
}

long trap_uptime() {
    return get_uptime();
}
