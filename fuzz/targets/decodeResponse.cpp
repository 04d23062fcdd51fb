// Passes documents to DecodeResponse. The result is encoded and decoded again; after that, it must not change
// any more.

#include <memory>

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTsDisk.h"
#include "apiMgmt/apiStub/base/apiObjects/base/methodReturns.h"
#include "apiMgmt/proto/apiMgrMsg.pb.h"
#include "fuzz/lib/fuzzCheck.h"

namespace {

using Return = std::unique_ptr<BASEApiMethodReturn>;

Return Decode(const std::string& document) {
    static const APITsDisk::APITsDiskGetListMethod method;
    protoIPCMsg::GPBIPCMsg response;
    response.set_msgtype(protoIPCMsg::APIResp);
    response.mutable_apirespmsg()->set_cmdtype(protoIPCMsg::Command);
    response.mutable_apirespmsg()->mutable_cmd()->set_respdata(document);
    return Return(method.DecodeResponse(response));
}

std::string Encoded(const Return& response) {
    return response ? response->GenerateResponseXml(object_encoding::kXml) : "";
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const Return first = Decode(std::string(reinterpret_cast<const char*>(data), size));
    if (!first || !first->GetSuccessful())
        return 0;
    first->GenerateResponseXml(object_encoding::kCsv);
    // Encoding has removed unknown attributes and replaced control characters with line feeds.
    const Return again = Decode(Encoded(first));
    if (!again || !again->GetSuccessful())
        FuzzFail("the encoded response cannot be decoded:\n" + Encoded(first));
    if (Encoded(Decode(Encoded(again))) != Encoded(again))
        FuzzFail("the response changes when it is encoded again:\n" + Encoded(again));
    return 0;
}
