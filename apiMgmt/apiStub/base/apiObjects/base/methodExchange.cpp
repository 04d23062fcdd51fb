#include "apiMgmt/apiStub/base/apiObjects/base/apiChannel.h"
#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethod.h"
#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethodReturn.h"
#include "apiMgmt/apiStub/base/apiObjects/base/elementText.h"
#include "apiMgmt/apiStub/base/apiObjects/base/responseDecoder.h"
#include "apiMgmt/common/utils/apiMethodError.h"
#include "apiMgmt/common/utils/generalUtils.h"
#include "apiMgmt/proto/apiMgrMsg.pb.h"

// The functions of BASEApiMethod that send a call and decode its response. Separate from the others, so that
// only clients link them: the daemon sends its own documents.

namespace {

constexpr char kSourceFile[] = "apiMgmt/apiStub/base/apiObjects/base/methodExchange";
constexpr int kIllegalSessionKey = 8;
constexpr int kNoSession = 10001;

/** Length of a locale such as "en_US". */
constexpr size_t kLocaleLength = 5;

std::string ConnectionElement(const std::string& sessionKey, const std::string& locale) {
    std::string element = "<ApiConnection>";
    AppendElement(element, "sessionkey", sessionKey);
    if (locale.size() == kLocaleLength)
        AppendElement(element, "locale", locale);
    return element + "</ApiConnection>";
}

void AddConnection(protoIPCMsg::APIReqMsg& request, const ConnectionRecord& connection) {
    request.set_sourceip(connection.sourceAddress);
    protoIPCMsg::HccHeader& header = *request.mutable_cmd()->mutable_hccheader();
    header.set_version(connection.version);
    header.set_userpass(connection.userPass);
    header.set_authtoken(connection.authToken);
    header.set_hccid(connection.hccid);
}

void AddBlobs(protoIPCMsg::APICmdReqMsg& command, const std::map<std::string, std::string>& blobs) {
    for (const auto& [name, data] : blobs) {
        if (data.empty())
            continue;
        protoIPCMsg::BinaryBlob& blob = *command.add_binaryblob();
        blob.set_name(name);
        blob.set_data(data);
        blob.set_length(static_cast<uint32_t>(data.size()));
    }
}

}  // namespace

void BASEApiMethod::BuildRequest(protoIPCMsg::GPBIPCMsg& request, const ConnectionRecord* connection,
                                 const std::string& sessionKey,
                                 const std::map<std::string, std::string>* blobs,
                                 const std::string& locale) const {
    if (connection == nullptr && sessionKey.empty())
        throw APIMethodError("Unable to create GPB request. Session identifier not specified",
                             kIllegalSessionKey, kSourceFile, __LINE__, kNoSession, nullptr);
    request.set_msgtype(protoIPCMsg::APIRequest);
    protoIPCMsg::APIReqMsg& api = *request.mutable_apireqmsg();
    api.set_cmdtype(protoIPCMsg::Command);
    std::string document = "<lumapi>";
    if (connection == nullptr) {
        api.set_sourceip("127.0.0.1");
        document += ConnectionElement(sessionKey, locale);
    }
    document += GenerateXml(false, true);
    document += "</lumapi>";
    api.mutable_cmd()->set_cmddata(std::move(document));
    if (connection != nullptr)
        AddConnection(api, *connection);
    if (blobs != nullptr)
        AddBlobs(*api.mutable_cmd(), *blobs);
}

void BASEApiMethod::Exchange(const protoIPCMsg::GPBIPCMsg& request, protoIPCMsg::GPBIPCMsg& response) const {
    if (channel != nullptr) {
        channel->Exchange(request, response);
        return;
    }
    WireLinkClient client(GENERALUtils::GetEndpoint(ENDPOINT_APIMGR));
    client.SendReceiveMessage(request, response);
}

BASEApiMethodReturn* BASEApiMethod::DecodeResponse(const protoIPCMsg::GPBIPCMsg& response) const {
    return ReturnOfResponse(response).release();
}

BASEApiMethodReturn* BASEApiMethod::ExecuteWithSession(const std::string& sessionKey,
                                                       const std::map<std::string, std::string>* blobs,
                                                       const std::string& locale) const {
    return SendAndDecode(nullptr, sessionKey, blobs, locale);
}

BASEApiMethodReturn* BASEApiMethod::Execute(const ConnectionRecord* connection,
                                            const std::map<std::string, std::string>* blobs) const {
    return SendAndDecode(connection, "", blobs, "");
}

BASEApiMethodReturn* BASEApiMethod::SendAndDecode(const ConnectionRecord* connection,
                                                  const std::string& sessionKey,
                                                  const std::map<std::string, std::string>* blobs,
                                                  const std::string& locale) const {
    protoIPCMsg::GPBIPCMsg request;
    protoIPCMsg::GPBIPCMsg response;
    BuildRequest(request, connection, sessionKey, blobs, locale);
    Exchange(request, response);
    return DecodeResponse(response);
}
