// Passes documents to DecodeResponse. The result is written and decoded again; after that, it must not change
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

std::string Written(const Return& answer) {
    return answer ? answer->GenerateResponseXml(object_encoding::kXml) : "";
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const Return first = Decode(std::string(reinterpret_cast<const char*>(data), size));
    if (!first || !first->GetSuccessful())
        return 0;
    first->GenerateResponseXml(object_encoding::kCsv);
    // The second time unknown attributes are gone and control characters have become line feeds.
    const Return again = Decode(Written(first));
    if (!again || !again->GetSuccessful())
        FuzzFail("what was written cannot be decoded:\n" + Written(first));
    if (Written(Decode(Written(again))) != Written(again))
        FuzzFail("changes with each writing:\n" + Written(again));
    return 0;
}
