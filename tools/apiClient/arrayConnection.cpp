#include "tools/apiClient/arrayConnection.h"

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiEnumsIDStrList.h"
#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethod.h"
#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethodReturn.h"
#include "apiMgmt/apiStub/client/attributeValue.h"
#include "apiMgmt/common/utils/generalUtils.h"
#include "apiMgmt/common/wirelink/accessKey.h"
#include "apiMgmt/proto/apiMgrMsg.pb.h"
#include "tools/apiClient/terminalOutput.h"
#include "tools/commandLine/usageError.h"

namespace apiclient {

namespace {

std::string DescribeState(int state) {
    const ENUMRow* row = ENUMTable(APIEnumsIDStrList::gErrorStateEnumIdStrList).FindValue(state);
    if (row == nullptr) {
        return "unknown error state";
    }
    return tessera::ReadableName(*row) + " (" + std::string(row->Description) + ", " + std::to_string(state) +
           ")";
}

}  // namespace

ArrayConnection::ArrayConnection(const std::string& socket_path, long timeout_s)
    : endpoint_(WireLinkEndpoint::CreateLocalEndpoint(
          socket_path, timeout_s, GENERALUtils::GetEndpoint(ENDPOINT_APIMGR).size_bytes())) {}

void ArrayConnection::Exchange(const protoIPCMsg::GPBIPCMsg& request, protoIPCMsg::GPBIPCMsg& response) {
    WireLinkClient(endpoint_).SendReceiveMessage(request, response);
    document_ = response.apirespmsg().cmd().respdata();
}

std::string ReadSessionKey(const std::string& path) {
    const std::string key = ReadAccessKey(path.c_str());
    if (key.empty()) {
        throw commandline::UsageError("no session key in " + path +
                                      "; its first line must contain one, and it must be a regular file that "
                                      "you own and that group and "
                                      "others can neither read nor write");
    }
    return key;
}

std::string DescribeFailure(const BASEApiMethod& call, const BASEApiMethodReturn& response) {
    std::string description = call.GetObjectName() + " " + call.GetCommandName() +
                              " failed: " + DescribeState(response.GetErrorState());
    std::string last;
    for (const std::string& text :
         {response.GetError(), response.GetLocalizedError(), response.GetErrorDetail()}) {
        if (!text.empty() && text != last) {
            description += "\n  " + Printable(text);
            last = text;
        }
    }
    return description;
}

}  // namespace apiclient
