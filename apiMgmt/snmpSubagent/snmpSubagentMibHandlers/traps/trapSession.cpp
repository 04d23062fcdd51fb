#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapSession.h"

#include <netdb.h>
#include <poll.h>

#include <cstdlib>
#include <cstring>

#include "apiMgmt/common/utils/stringUtil.h"

// Exported by the agent library and declared in none of its headers.
extern "C" netsnmp_session* main_session;

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

bool has_master_agent() {
    return main_session != nullptr;
}

bool notify_master_agent(netsnmp_variable_list* variables) {
    // A writable stream of this family has more space than the largest notification needs.
    pollfd link{snmp_sess_transport(snmp_sess_pointer(main_session))->sock, POLLOUT, 0};
    if (poll(&link, 1, 0) != 1 || (link.revents & POLLOUT) == 0)
        return false;
    // By default the library repeats a request every second until the master agent responds. On a stream
    // nothing is lost, so each repetition would be another notification. The total timeout stays as it was.
    main_session->timeout *= main_session->retries + 1;
    main_session->retries = 0;
    send_v2trap(variables);
    return true;
}

long trap_uptime() {
    return get_uptime();
}
