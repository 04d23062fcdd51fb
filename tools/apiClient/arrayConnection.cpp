#include "tools/apiClient/arrayConnection.h"

#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethod.h"
#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethodReturn.h"
#include "apiMgmt/common/utils/generalUtils.h"
#include "apiMgmt/common/wirelink/accessKey.h"
#include "apiMgmt/common/xmlwrap/xmlParser.h"
#include "apiMgmt/proto/apiMgrMsg.pb.h"
#include "tools/apiClient/printableText.h"
#include "tools/apiClient/usageError.h"

namespace {

constexpr char kRoot[] = "lumapi";

size_t CountChildren(const parser::XMLElement& parent) {
    size_t count = 0;
    for (parser::XMLElement child = parent.GetFirstChild(); child; child = child.GetNextSibling()) {
        ++count;
    }
    return count;
}

bool IsApiDocument(const std::string& document) {
    parser::XMLParser parser;
    return parser.ParseXMLString(document) && parser.GetDocumentElement().GetTagName() == kRoot;
}

}  // namespace

ArrayConnection::ArrayConnection(const std::string& socket_path, long timeout_s)
    : endpoint_(WireLinkEndpoint::CreateLocalEndpoint(
          socket_path, timeout_s, GENERALUtils::GetEndpoint(ENDPOINT_APIMGR).size_bytes())) {}

void ArrayConnection::Exchange(const protoIPCMsg::GPBIPCMsg& request, protoIPCMsg::GPBIPCMsg& response) {
    WireLinkClient(endpoint_).SendReceiveMessage(request, response);
    document_ = response.apirespmsg().cmd().respdata();
}

std::unique_ptr<BASEApiMethodReturn> ArrayConnection::Call(BASEApiMethod& call,
                                                           const std::string& session_key,
                                                           const std::string& locale) {
    call.SetChannel(this);
    std::unique_ptr<BASEApiMethodReturn> answer(call.ExecuteWithSession(session_key, nullptr, locale));
    call.SetChannel(nullptr);
    // No return means no result, or a document of something else.
    if (answer == nullptr && !IsApiDocument(document_)) {
        throw AnswerError("the answer is no document of the array's API: " +
                          PrintableText(document_.substr(0, 200)));
    }
    return answer;
}

size_t ArrayConnection::CountObjects() const {
    parser::XMLParser parser;
    if (!parser.ParseXMLString(document_)) {
        return 0;
    }
    for (const char* tag :
         {"ReturnObject", "ReturnObjectArray", "ReturnMethodObject", "ReturnMethodObjectArray"}) {
        if (const parser::XMLElement found = parser.GetDocumentElement().GetFirstChildByTagName(tag)) {
            return CountChildren(found);
        }
    }
    return 0;
}

std::string SessionKey(const std::string& path) {
    const std::string key = ReadAccessKey(path.c_str());
    if (key.empty()) {
        throw UsageError(
            "no session key in " + path +
            ": its first line must hold one, and the file must be a regular one that is yours and that "
            "neither group nor others can read or write");
    }
    return key;
}
