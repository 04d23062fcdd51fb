#include "tests/unit/core/fakes/fakeApiMgr.h"

#include <mutex>
#include <utility>

#include "apiMgmt/common/wirelink/wireLink.h"
#include "apiMgmt/common/xmlwrap/xmlParser.h"
#include "tests/unit/core/fakes/transcript.h"

namespace fake_api_mgr {

std::map<std::string, std::string> documents;
std::string last_document;
std::string access_key = "KEY";
envelope last_request;

namespace {

std::recursive_mutex lock;  // guards all state of this file; callbacks may call its functions
bool connections_are_refused = false;
std::function<void(const envelope&, envelope&)> current_meddler;

const char* const kReturn = "<lumapi><ApiMethodReturn><Successful>True</Successful></ApiMethodReturn>";

// "GetList TsDisk" or "Get TsDisk 7.3".
std::string name_of_request(const std::string& document) {
    parser::XMLParser parser(nullptr);
    parser.ParseXMLString(document);
    const parser::XMLElement method = parser.GetDocumentElement().GetFirstChildByTagName("ApiMethod");
    std::string name = method.GetFirstChildByTagName("Command").GetElementContent() + " " +
                       method.GetFirstChildByTagName("Object").GetElementContent();
    const parser::XMLElement instance =
        method.GetFirstChildByTagName("Attributes").GetFirstChildByTagName("InstanceId");
    return instance ? name + " " + instance.GetElementContent() : name;
}

void answer_command(const std::string& document, envelope& response) {
    const std::string name = name_of_request(document);
    const auto found = documents.find(name);
    response.mutable_apirespmsg()->set_cmdtype(protoIPCMsg::Command);
    response.mutable_apirespmsg()->mutable_cmd()->set_respdata(found != documents.end() ? found->second
                                                                                        : list_answer(""));
    last_document = document;
    transcript::add("api " + name);
}

void answer(const envelope& request, envelope& response) {
    const std::lock_guard guard(lock);
    last_request = request;
    response.set_msgtype(protoIPCMsg::APIResp);
    response.set_sequencenum(request.sequencenum());
    if (request.apireqmsg().cmdtype() == protoIPCMsg::Ping) {
        transcript::add("api ping");
        response.mutable_apirespmsg()->set_cmdtype(protoIPCMsg::Ping);
        response.mutable_apirespmsg()->mutable_ping()->set_pingdata(true);
    } else {
        answer_command(request.apireqmsg().cmd().cmddata(), response);
    }
    if (current_meddler)
        current_meddler(request, response);
}

}  // namespace

void refuse_connections(bool refuse) {
    const std::lock_guard guard(lock);
    connections_are_refused = refuse;
}

void meddle(std::function<void(const envelope&, envelope&)> meddler) {
    const std::lock_guard guard(lock);
    current_meddler = std::move(meddler);
}

std::string list_answer(const std::string& objects) {
    return kReturn + ("<ReturnObjectArray>" + objects) + "</ReturnObjectArray></lumapi>";
}

std::string object_answer(const std::string& object) {
    return kReturn + ("<ReturnObject>" + object) + "</ReturnObject></lumapi>";
}

std::string failure_answer(const std::string& error_code) {
    return "<lumapi><ApiMethodReturn><Successful>False</Successful><ErrorCode>" + error_code +
           "</ErrorCode><Error>it failed</Error></ApiMethodReturn></lumapi>";
}

}  // namespace fake_api_mgr

// ---- replacements for functions of the channel ----

std::string ReadAccessKey(const char* /*path*/) {
    return fake_api_mgr::access_key;
}

WireLinkSocket::WireLinkSocket(const WireLinkEndpoint& endpoint, int descriptor, WireLinkWait wait)
    : endpoint_(endpoint), descriptor_(descriptor), wait_(std::move(wait)) {}

bool PollDescriptor(int, short, int) {
    return true;
}

WireLinkSocket::~WireLinkSocket() = default;

WireLinkClient::WireLinkClient(const WireLinkEndpoint& endpoint, WireLinkWait wait)
    : WireLinkSocket(endpoint, -1, std::move(wait)) {
    const std::lock_guard guard(fake_api_mgr::lock);
    if (fake_api_mgr::connections_are_refused) {
        transcript::add("api refused");
        throw WireLinkError(endpoint.path() + ": nobody listens");
    }
}

void WireLinkClient::SendReceiveMessage(const google::protobuf::Message& request,
                                        google::protobuf::Message& response) {
    fake_api_mgr::answer(static_cast<const fake_api_mgr::envelope&>(request),
                         static_cast<fake_api_mgr::envelope&>(response));
}
