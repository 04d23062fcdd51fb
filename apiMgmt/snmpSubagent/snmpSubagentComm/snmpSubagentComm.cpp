#include "apiMgmt/snmpSubagent/snmpSubagentComm/snmpSubagentComm.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTsController.h"
#include "apiMgmt/common/platform/clock.h"
#include "apiMgmt/common/utils/generalUtils.h"
#include "apiMgmt/common/utils/timeUtil.h"
#include "apiMgmt/common/xmlwrap/xmlParser.h"
#include "apiMgmt/proto/apiMgrMsg.pb.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

SnmpSubagentComm* snmpSubagentComm = nullptr;
std::string apiRequestPrefix;
const char* const apiDocumentEnd = "</lumapi>";

namespace {

constexpr const char* apiRequestHeader = "<lumapi><ApiConnection><SessionKey>";
constexpr const char* apiSessionTrailer = "</SessionKey></ApiConnection>";
constexpr const char* kPingText = "ping from snmpSubagent to ApiMgr";
constexpr const char* kDocumentRoot = "lumapi";

// Shared by both threads. The first request gets number 1.
std::atomic<uint32_t> request_sequence_number{0};

timeval to_timeval(int64_t time_us) {
    return {.tv_sec = static_cast<time_t>(time_us / 1000000),
            .tv_usec = static_cast<suseconds_t>(time_us % 1000000)};
}

thread_local WireLinkWait wait_of_thread = PollDescriptor;

// Waits with the thread's wait function, and logs a long exchange twice: after 10 seconds and when it ends.
class exchange_wait {
  public:
    explicit exchange_wait(uint32_t req_seqnum) : req_seqnum_(req_seqnum) {}

    bool wait(int descriptor, short events, int timeout_ms) {
        const int64_t quiet_ms = kLongExchange_ms - elapsed_ms();
        if (!is_long_ && quiet_ms <= 0) {
            is_long_ = true;
            SUBAGENT_LOG(warning, "API manager: no response to request %u for 10 s; still waiting\n",
                         req_seqnum_);
        }
        return wait_of_thread(descriptor, events,
                              is_long_ ? timeout_ms : std::min(timeout_ms, static_cast<int>(quiet_ms)));
    }

    void end(const char* outcome) const {
        if (is_long_)
            SUBAGENT_LOG(warning, "API manager: request %u %s after %lld s\n", req_seqnum_, outcome,
                         static_cast<long long>(elapsed_ms() / 1000));
    }

  private:
    static constexpr int64_t kLongExchange_ms = 10'000;

    int64_t elapsed_ms() const { return ClockNowMs() - begin_ms_; }

    uint32_t req_seqnum_;
    int64_t begin_ms_ = ClockNowMs();
    bool is_long_ = false;
};

// Returns false, after logging the reason, if the exchange failed.
bool exchange(const protoIPCMsg::GPBIPCMsg& request, protoIPCMsg::GPBIPCMsg& response) {
    exchange_wait waiting(request.sequencenum());
    try {
        WireLinkClient client(GENERALUtils::GetEndpoint(ENDPOINT_APIMGR),
                              [&waiting](int descriptor, short events, int timeout_ms) {
                                  return waiting.wait(descriptor, events, timeout_ms);
                              });
        client.SendReceiveMessage(request, response);
        waiting.end("answered");
        return true;
    } catch (const std::exception& error) {
        SUBAGENT_LOG(warning, "Caught std::exception processing request: %s\n", error.what());
    } catch (...) {
        SUBAGENT_LOG(warning, "Caught unknown exception processing request\n");
    }
    waiting.end("given up");
    return false;
}

// Checks the envelope only, not the document in it.
bool is_api_response(const protoIPCMsg::GPBIPCMsg& response, uint32_t req_seqnum) {
    if (response.sequencenum() != req_seqnum) {
        SUBAGENT_LOG(warning, "> > seqNum mismatch: req_seqnum=%u: resp_seqnum=%u\n", req_seqnum,
                     response.sequencenum());
        return false;
    }
    if (response.msgtype() != protoIPCMsg::APIResp) {
        SUBAGENT_LOG(
            warning,
            "msgResponse.msgtype != protoIPCMsg::APIResp: msgtype: %u, req_seqnum=%u: resp_seqnum=%u\n",
            static_cast<unsigned>(response.msgtype()), req_seqnum, response.sequencenum());
        return false;
    }
    if (!response.has_apirespmsg()) {
        SUBAGENT_LOG(warning, "msgResponse did Not have apirespmsg\n");
        return false;
    }
    return true;
}

// Checks only that the document is well-formed and has the right root, which is enough to prove access.
bool is_api_document(const std::string& text) {
    parser::XMLParser document(nullptr);
    document.ParseXMLString(text);
    const parser::XMLElement root = document.GetDocumentElement();
    if (!root) {
        SUBAGENT_LOG(warning, "response from ApiMgr does not parse: %s\n", text.c_str());
        return false;
    }
    if (root.GetTagName() != kDocumentRoot) {
        SUBAGENT_LOG(warning, "response from ApiMgr does not contain 'lumapi': %s\n", text.c_str());
        return false;
    }
    return true;
}

protoIPCMsg::GPBIPCMsg access_test_request() {
    protoIPCMsg::GPBIPCMsg request;
    request.set_msgtype(protoIPCMsg::APIRequest);
    request.mutable_apireqmsg()->set_cmdtype(protoIPCMsg::Command);
    request.mutable_apireqmsg()->mutable_cmd()->set_cmddata(
        apiRequestPrefix + APITsController::APITsControllerGetListMethod().GenerateXml(false, true) +
        apiDocumentEnd);
    return request;
}

}  // namespace

int SnmpSubagentComm::TryOpenSocketToApiMgr() {
    try {
        WireLinkClient client(GENERALUtils::GetEndpoint(ENDPOINT_APIMGR));
        return 0;
    } catch (const std::exception& error) {
        SUBAGENT_LOG(warning, "Exception: %s\n", error.what());
        SUBAGENT_LOG(warning, " ---- Can't connect to ApiMgr's socket ----\n");
        return 1;
    }
}

int SnmpSubagentComm::SendRequestToAPIManager(protoIPCMsg::GPBIPCMsg& request,
                                              protoIPCMsg::GPBIPCMsg& response) {
    const uint32_t req_seqnum = ++request_sequence_number;
    request.set_sequencenum(req_seqnum);
    const bool good = exchange(request, response) && is_api_response(response, req_seqnum);
    set_apimgr_state(good);
    return good ? 0 : 1;
}

int SnmpSubagentComm::SendPingToApiMgr() {
    protoIPCMsg::GPBIPCMsg request;
    protoIPCMsg::GPBIPCMsg response;
    request.set_msgtype(protoIPCMsg::APIRequest);
    request.mutable_apireqmsg()->set_cmdtype(protoIPCMsg::Ping);
    request.mutable_apireqmsg()->mutable_ping()->set_pingdata(kPingText);
    if (SendRequestToAPIManager(request, response) == 0 && response.apirespmsg().has_ping() &&
        response.apirespmsg().ping().pingdata())
        return 0;
    set_apimgr_state(false);
    return 1;
}

int SnmpSubagentComm::TestAccessToApiMgr() {
    protoIPCMsg::GPBIPCMsg request = access_test_request();
    protoIPCMsg::GPBIPCMsg response;
    bool good = SendRequestToAPIManager(request, response) == 0;
    if (good && !response.apirespmsg().has_cmd()) {
        SUBAGENT_LOG(warning, "msgResponse did Not have cmd\n");
        good = false;
    }
    good = good && is_api_document(response.apirespmsg().cmd().respdata());
    set_apimgr_state(good);
    return good ? 0 : 1;
}

void SnmpSubagentComm::set_apimgr_state(bool ok) {
    if (ok)
        apimgr_ok_time_us_ = ClockNowUs();
    apimgr_ok_ = ok;
}

void SnmpSubagentComm::set_agentx_state(bool ok) {
    if (ok)
        agentx_ok_time_us_ = ClockNowUs();
    agentx_ok_ = ok;
}

void SnmpSubagentComm::time_since_apimgr_ok(timeval* elapsed) const {
    TimeSince(to_timeval(apimgr_ok_time_us_), elapsed);
}

void SnmpSubagentComm::time_since_agentx_ok(timeval* elapsed) const {
    TimeSince(to_timeval(agentx_ok_time_us_), elapsed);
}

void set_exchange_wait(WireLinkWait wait) {
    wait_of_thread = std::move(wait);
}

void build_api_request_prefix(const std::string& session_key) {
    apiRequestPrefix = apiRequestHeader + session_key + apiSessionTrailer;
}

int check_apimgr_socket() {
    return snmpSubagentComm->TryOpenSocketToApiMgr();
}

int test_apimgr() {
    if (check_apimgr_socket() != 0) {
        SUBAGENT_LOG(warning, "Could not open socket to ApiMgr.\n");
        return 1;
    }
    if (snmpSubagentComm->SendPingToApiMgr() != 0) {
        SUBAGENT_LOG(warning, "Failed 1st try to SendPingToApiMgr()\n");
        return 1;
    }
    if (snmpSubagentComm->TestAccessToApiMgr() != 0) {
        SUBAGENT_LOG(warning, "Failed TestAccessToApiMgr()\n");
        return 1;
    }
    return 0;
}
