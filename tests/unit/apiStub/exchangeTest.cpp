#include <gmock/gmock.h>

#include <memory>

#include "apiMgmt/apiStub/base/apiObjects/base/methodReturns.h"
#include "apiMgmt/common/utils/apiMethodError.h"
#include "apiMgmt/common/utils/generalUtils.h"
#include "apiMgmt/proto/apiMgrMsg.pb.h"
#include "tests/unit/apiStub/sampleClasses.h"
#include "tests/unit/layers/fakeApiMgr.h"
#include "tests/unit/layers/temporaryFolder.h"

namespace {

/** The socket of the API manager in this program; each test runs in a separate process. */
const WireLinkEndpoint& Endpoint() {
    static const TemporaryFolder folder;
    static const WireLinkEndpoint endpoint =
        WireLinkEndpoint::CreateLocalEndpoint(folder.Path("api.sock"), 60, 65536);
    return endpoint;
}

}  // namespace

// Replaces the fixed paths.
const WireLinkEndpoint& GENERALUtils::GetEndpoint(int index) {
    EXPECT_EQ(index, ENDPOINT_APIMGR);
    return Endpoint();
}

namespace {

using protoIPCMsg::GPBIPCMsg;
using testing::HasSubstr;

bool AnswerWithOneDisk(const GPBIPCMsg& /*request*/, GPBIPCMsg& response) {
    SetDocument(response,
                "<lumapi><ApiMethodReturn><Successful>True</Successful></ApiMethodReturn>"
                "<ReturnObjectArray><TsDisk><Index>5</Index></TsDisk></ReturnObjectArray></lumapi>");
    return true;
}

TEST(Exchange, EachCallHasAConnectionOfItsOwn) {
    FakeApiMgr manager(Endpoint(), 2, AnswerWithOneDisk);
    const sample::DiskGetList method;
    const ConnectionRecord connection = {"1.0", "user:pass", "token", "id", "10.0.0.9"};
    const std::map<std::string, std::string> blobs = {{"key", "data"}};
    const std::unique_ptr<BASEApiMethodReturn> by_session(method.ExecuteWithSession("KEY", &blobs, "en_US"));
    const std::unique_ptr<BASEApiMethodReturn> forwarded(method.Execute(&connection, nullptr));
    for (const auto* answer : {&by_session, &forwarded}) {
        const auto* list = dynamic_cast<const COMPObjectMethodReturn*>(answer->get());
        ASSERT_NE(list, nullptr);
        ASSERT_EQ(list->GetObjects().size(), 1u);
        EXPECT_EQ(list->GetObjects()[0]->GetAttribute("Index"), "5");
    }
    GPBIPCMsg expected;
    method.BuildRequest(expected, nullptr, "KEY", &blobs, "en_US");
    ASSERT_EQ(manager.requests.size(), 2u);
    EXPECT_EQ(manager.requests[0].SerializeAsString(), expected.SerializeAsString());
    EXPECT_EQ(manager.requests[1].apireqmsg().sourceip(), "10.0.0.9");
}

TEST(Exchange, AForeignAnswerIsAReturn) {
    FakeApiMgr manager(Endpoint(), 1, [](const GPBIPCMsg&, GPBIPCMsg& response) {
        response.set_msgtype(protoIPCMsg::EMPTY_RESP);
        return true;
    });
    const std::unique_ptr<BASEApiMethodReturn> answer(
        sample::DiskGetList().ExecuteWithSession("KEY", nullptr, ""));
    EXPECT_FALSE(answer->GetSuccessful());
    EXPECT_EQ(answer->GetErrorDetail(), "Message type invalid or missing from response");
}

}  // namespace
