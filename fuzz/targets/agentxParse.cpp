// Passes AgentX PDUs from the master agent, valid and damaged, through the daemon's agentx_parse to the
// library's, and the parsed PDUs to the registered handler. A request that is too long must be rejected with
// one response that carries its identifiers; the bindings of all others must be served as the model does.

#include <algorithm>
#include <optional>
#include <vector>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/oidLookup.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/requestPace.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/serviceWindow.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/setRequest.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapQueue.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"
#include "fuzz/lib/fuzzCheck.h"
#include "fuzz/lib/fuzzWorld.h"
#include "fuzz/lib/requestModel.h"
#include "tests/unit/core/fakes/transcript.h"

extern "C" {
int agentx_parse(netsnmp_session* session, netsnmp_pdu* pdu, u_char* data, size_t length);
int agentx_realloc_build(netsnmp_session* session, netsnmp_pdu* pdu, u_char** buffer, size_t* space,
                         size_t* length);
int agentx_check_packet(u_char* packet, size_t length);
}

namespace {

constexpr u_char kNetworkByteOrder = 0x10;
constexpr int kGet = 5, kGetNext = 6, kGetBulk = 7, kTestSet = 8, kResponse = 18;
constexpr size_t kHeaderSize = 20;
constexpr size_t kMaximumRequestSize = 65528;

struct rejection {
    long sessid, transid, reqid, error;
};
std::optional<rejection> rejected;

using octets = std::vector<u_char>;

void add_binding(FuzzInput& input, netsnmp_pdu* pdu) {
    const bool writes = pdu->command == kTestSet;
    const std::vector<oid> name = oid_of(writes ? any_writable(input) : any_name(input, "R"));
    if (writes) {
        static constexpr u_char kTypes[] = {ASN_OCTET_STR, ASN_OCTET_STR, ASN_OCTET_STR,
                                            ASN_OPAQUE,    ASN_IPADDRESS, ASN_NULL};
        const u_char type = kTypes[input.Below(std::size(kTypes))];
        const std::string text = type == ASN_IPADDRESS ? "4321" : any_text(input);
        snmp_pdu_add_variable(pdu, name.data(), name.size(), type, text.data(),
                              type == ASN_NULL ? 0 : text.size());
        return;
    }
    const oid end[] = {1, 3, input.Below(8)};
    snmp_pdu_add_variable(pdu, name.data(), name.size(),
                          input.OnceIn(4) ? ASN_PRIV_INCL_RANGE : ASN_PRIV_EXCL_RANGE, end, sizeof end);
}

octets encoded(netsnmp_pdu* pdu) {
    netsnmp_session session{};
    u_char* buffer = nullptr;
    size_t space = 0;
    size_t length = 0;
    const bool is_good = agentx_realloc_build(&session, pdu, &buffer, &space, &length) == 0;
    octets bytes(buffer, buffer + (is_good ? length : 0));
    free(buffer);
    return bytes;
}

octets any_pdu(FuzzInput& input) {
    static constexpr int kTypes[] = {kGet, kGetNext, kGetBulk, kTestSet, kTestSet, kResponse};
    netsnmp_pdu* pdu = snmp_pdu_create(kTypes[input.Below(std::size(kTypes))]);
    pdu->version = 0xC1;
    pdu->flags = input.OnceIn(2) ? kNetworkByteOrder : 0;
    for (long* id : {&pdu->sessid, &pdu->transid, &pdu->reqid})
        *id = static_cast<long>(input.Below(65537)) * 257;
    const size_t bindings = input.OnceIn(8) ? 1200 + input.Below(256) : 1 + input.Below(4);
    add_binding(input, pdu);
    for (size_t count = 1; count < bindings && !(count < 4 && input.IsEmpty()); ++count) {
        if (count < 4)
            add_binding(input, pdu);
        else
            snmp_pdu_add_variable(pdu, pdu->variables->name, pdu->variables->name_length,
                                  pdu->variables->type, pdu->variables->val.string, pdu->variables->val_len);
    }
    octets bytes = encoded(pdu);
    snmp_free_pdu(pdu);
    for (size_t damages = input.OnceIn(2) ? input.Below(6) : 0; damages > 0 && !bytes.empty(); --damages)
        bytes[input.Below(std::min<size_t>(bytes.size(), 256))] = input.Byte();
    return bytes;
}

long word_at(const octets& bytes, size_t at) {
    long word = 0;
    for (size_t i = 0; i < 4; ++i)
        word = word * 256 + bytes[at + ((bytes[2] & kNetworkByteOrder) != 0 ? i : 3 - i)];
    return word;
}

void check_rejection(const octets& bytes, int result) {
    const bool is_request = bytes[1] >= kGet && bytes[1] <= kTestSet;
    if (!is_request || bytes.size() <= kMaximumRequestSize) {
        FuzzCheck(!rejected, "a request that is short enough was rejected");
        return;
    }
    FuzzCheck(result == SNMPERR_TOO_LONG && rejected && rejected->error == SNMP_ERR_TOOBIG,
              "a request that is too long was not rejected with tooBig");
    FuzzCheck(rejected->sessid == word_at(bytes, 4) && rejected->transid == word_at(bytes, 8) &&
                  rejected->reqid == word_at(bytes, 12),
              "the rejection has other identifiers than the request");
}

void serve(const netsnmp_pdu& parsed) {
    static constexpr int kModes[] = {MODE_GET, MODE_GETNEXT, MODE_GETBULK};
    snmp_pdu_of_test pdu(parsed.command == kTestSet ? MODE_SET_RESERVE1 : MODE_GET);
    for (const netsnmp_variable_list* each = parsed.variables; each != nullptr; each = each->next_variable)
        pdu.add_parsed(*each);
    note_no_request_waits();
    begin_agent_tick();
    if (parsed.command == kTestSet)
        set_and_check(pdu);
    else
        serve_and_check(pdu, kModes[parsed.command - kGet]);
    perform_queued_set();
    end_agent_tick();
}

// Passes only complete PDUs on, as the library does: the rest of an incomplete one may still arrive.
void take(octets bytes) {
    const int length = agentx_check_packet(bytes.data(), bytes.size());
    if (length < static_cast<int>(kHeaderSize) || static_cast<size_t>(length) > bytes.size())
        return;
    const octets whole(bytes.begin(), bytes.begin() + length);  // an exact block, for the sanitizer
    octets given = whole;
    netsnmp_session session{};
    netsnmp_pdu* pdu = snmp_pdu_create(0);
    rejected.reset();
    const int result = agentx_parse(&session, pdu, given.data(), given.size());
    check_rejection(whole, result);
    if (result == 0 && pdu->variables != nullptr && pdu->command >= kGet && pdu->command <= kTestSet)
        serve(*pdu);
    snmp_free_pdu(pdu);
}

}  // namespace

/** Replaces the library's function: records the response that the daemon sends itself. */
extern "C" int snmp_send(netsnmp_session* /*session*/, netsnmp_pdu* response) {
    FuzzCheck(!rejected && response->command == kResponse, "more than one response");
    rejected = {response->sessid, response->transid, response->reqid, response->errstat};
    snmp_free_pdu(response);
    return 1;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static FuzzMibWorld world;
    verbose = false;
    last_oid_len = 0;
    FuzzInput input(data, size);
    fill_store(input);
    for (int count = 0; count < 16 && !input.IsEmpty(); ++count)
        take(any_pdu(input));
    trapsToSend.clear();
    transcript::take();
    return 0;
}
