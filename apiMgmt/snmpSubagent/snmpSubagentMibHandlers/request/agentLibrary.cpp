#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/agentLibrary.h"

#include <dlfcn.h>
#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <vector>

#include "apiMgmt/common/platform/clock.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/requestPace.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/netSnmpHeaders.h"

// Exported by the agent library and declared in no header of it.
extern "C" {
extern netsnmp_session* main_session;
int agentx_send_ping(netsnmp_session* session);
int agentx_parse(netsnmp_session* session, netsnmp_pdu* pdu, u_char* data, size_t length);
}

namespace {

// Of the header of an AgentX PDU.
constexpr size_t kTypeAt = 1, kFlagsAt = 2, kSessionAt = 4, kTransactionAt = 8, kPacketAt = 12;
constexpr u_char kNetworkByteOrder = 0x10;
constexpr u_char kGet = 5, kTestSet = 8;  // with GetNext and GetBulk between them: these have bindings
constexpr int kResponse = 18;

// The error that refuses a request has a header of 8 octets more, and must fit as well.
constexpr size_t kGreatestRequest = kGreatestAnswer - 8;

long header_word(const u_char* data, size_t at) {
    const u_char* octet = data + at;
    return (data[kFlagsAt] & kNetworkByteOrder) != 0
               ? static_cast<long>(octet[0]) << 24 | octet[1] << 16 | octet[2] << 8 | octet[3]
               : static_cast<long>(octet[3]) << 24 | octet[2] << 16 | octet[1] << 8 | octet[0];
}

void refuse_as_too_big(netsnmp_session* session, const u_char* data) {
    netsnmp_pdu* answer = snmp_pdu_create(kResponse);
    if (answer == nullptr)
        return;
    answer->version = session->version;
    answer->sessid = header_word(data, kSessionAt);
    answer->transid = header_word(data, kTransactionAt);
    answer->reqid = header_word(data, kPacketAt);
    answer->errstat = SNMP_ERR_TOOBIG;
    answer->errindex = 1;
    if (snmp_send(session, answer) == 0)
        snmp_free_pdu(answer);
}

}  // namespace

/** Stands before the agent library's own, which drops a longer request without a word: the manager would get
   no answer, and the master would give the daemon up when agentXTimeout is over. One datagram would do. */
extern "C" __attribute__((visibility("default"))) int agentx_parse(netsnmp_session* session, netsnmp_pdu* pdu,
                                                                   u_char* data, size_t length) {
    static const auto parse = reinterpret_cast<decltype(&agentx_parse)>(dlsym(RTLD_NEXT, "agentx_parse"));
    const bool is_request = length > kTypeAt && data[kTypeAt] >= kGet && data[kTypeAt] <= kTestSet;
    if (is_request && length > kGreatestRequest) {
        refuse_as_too_big(session, data);
        return SNMPERR_TOO_LONG;
    }
    if (is_request)
        note_request_arrived(length);
    return parse(session, pdu, data, length);
}

void agent_log_to_stderr() {
    snmp_enable_stderrlog();
}

void agent_become_subagent() {
    netsnmp_ds_set_boolean(NETSNMP_DS_APPLICATION_ID, NETSNMP_DS_AGENT_ROLE, 1);
    // The daemon has nothing to remember, and the library's own directory belongs to another user.
    netsnmp_ds_set_boolean(NETSNMP_DS_LIBRARY_ID, NETSNMP_DS_LIB_DONT_PERSIST_STATE, 1);
}

int agent_init() {
    return init_agent(kAgentApplication);
}

void agent_init_snmp() {
    init_snmp(kAgentApplication);
}

bool agent_has_main_session() {
    return main_session != nullptr;
}

int agent_send_ping() {
    return agentx_send_ping(main_session);
}

int agent_check() {
    return agent_check_and_process(0);
}

bool agent_wait(int64_t timeout_us, int descriptor, short events) {
    fd_set of_library;
    FD_ZERO(&of_library);
    int count = 0;
    int block = 0;
    timeval timeout{.tv_sec = timeout_us / kSecondUs, .tv_usec = timeout_us % kSecondUs};
    snmp_select_info(&count, &of_library, &timeout,
                     &block);  // shortens the timeout to the library's next alarm
    static std::vector<pollfd> watched;
    watched.assign(1, {.fd = descriptor, .events = events, .revents = 0});
    for (int each = 0; each < count; ++each) {
        if (FD_ISSET(each, &of_library))
            watched.push_back({.fd = each, .events = POLLIN, .revents = 0});
    }
    const timespec limit{.tv_sec = timeout.tv_sec, .tv_nsec = timeout.tv_usec * 1000};
    const int ready = ppoll(watched.data(), watched.size(), &limit, nullptr);
    if (ready < 0 && errno != EINTR)  // must not turn the wait into a spin
        ClockSleepMicroseconds(std::min(timeout_us, kMillisecondUs));
    return ready > 0 && watched.front().revents != 0;
}

void agent_shutdown() {
    snmp_shutdown(kAgentApplication);
}

void agent_oid_text(int col_id, char* text, unsigned long size) {
    snprint_objid(text, size, cols[col_id].oid_ptr, cols[col_id].oid_len);
}
