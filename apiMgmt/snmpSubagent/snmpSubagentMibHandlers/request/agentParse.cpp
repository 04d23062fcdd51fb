#include <dlfcn.h>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/agentLibrary.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/requestPace.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/netSnmpHeaders.h"

// Exported by the agent library, but not declared in its headers.
extern "C" int agentx_parse(netsnmp_session* session, netsnmp_pdu* pdu, u_char* data, size_t length);

namespace {

// Offsets in the header of an AgentX PDU.
constexpr size_t kTypeAt = 1, kFlagsAt = 2, kSessionAt = 4, kTransactionAt = 8, kPacketAt = 12;
constexpr u_char kNetworkByteOrder = 0x10;
constexpr u_char kGet = 5, kTestSet = 8;  // with GetNext and GetBulk between them
constexpr int kResponse = 18;

// The error response's header is 8 octets longer than the request's, and the response must fit as well.
constexpr size_t kMaximumRequest = kMaximumResponse - 8;

long header_word(const u_char* data, size_t at) {
    const u_char* octet = data + at;
    return (data[kFlagsAt] & kNetworkByteOrder) != 0
               ? static_cast<long>(octet[0]) << 24 | octet[1] << 16 | octet[2] << 8 | octet[3]
               : static_cast<long>(octet[3]) << 24 | octet[2] << 16 | octet[1] << 8 | octet[0];
}

void reject_as_too_big(netsnmp_session* session, const u_char* data) {
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

/**
 * Replaces the agent library's function, which silently drops a longer request: the manager would get no
 * response, and after agentXTimeout the master agent would disconnect the daemon. A single datagram would be
 * enough.
 */
extern "C" __attribute__((visibility("default"))) int agentx_parse(netsnmp_session* session, netsnmp_pdu* pdu,
                                                                   u_char* data, size_t length) {
    static const auto parse = reinterpret_cast<decltype(&agentx_parse)>(dlsym(RTLD_NEXT, "agentx_parse"));
    const bool is_request = length > kTypeAt && data[kTypeAt] >= kGet && data[kTypeAt] <= kTestSet;
    if (is_request && length > kMaximumRequest) {
        reject_as_too_big(session, data);
        return SNMPERR_TOO_LONG;
    }
    if (is_request)
        note_request_arrived(length);
    return parse(session, pdu, data, length);
}
