#include "apiMgmt/snmpSubagent/snmpSubagentMain/mgmtMsgListener.h"

#include <future>

#include "apiMgmt/proto/apiMgrMsg.pb.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/processState.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/requestHandler.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/outstandingTraps.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapQueue.h"
#include "tests/unit/core/fakes/fakeMgmtSender.h"
#include "tests/unit/core/fakes/mibWorld.h"

namespace {

using protoIPCMsg::GPBIPCMsg;
using std::string;

GPBIPCMsg message(uint32_t cmdType, uint32_t cmdSpecific, const string& text = "") {
    GPBIPCMsg envelope;
    envelope.set_msgtype(protoIPCMsg::MGMT);
    protoIPCMsg::MGMTMsg& mgmt = *envelope.mutable_mgmtmsg();
    mgmt.set_serviceid(77);
    mgmt.set_msgtype(99);
    mgmt.set_cmdtype(cmdType);
    mgmt.set_cmdspecific(cmdSpecific);
    mgmt.set_addlarg(text);
    return envelope;
}

class Listener : public MibWorld {
  protected:
    Listener() { verbose = false; }

    static string handle(const GPBIPCMsg& envelope) {
        HandleMgmtMsg(envelope);
        return transcript::take();
    }
};

TEST_F(Listener, QueuesCommandsInOrder) {
    EXPECT_EQ(handle(message(0, 1, "1 2 3 201 0 0 0 0 first")), "");
    EXPECT_EQ(handle(message(0, 1, "1 2 3 201 0 0 0 0 second")), "");
    for (const char* text : {"", "1 2 3", "1 2 3 201 0 0 0 0"})
        EXPECT_EQ(handle(message(0, 1, text)), "");
    ASSERT_EQ(trapsToSend.size(), 2U);
    EXPECT_EQ(trapsToSend.front()->alertString, "first");
    handle(message(0, 1, "1 2 3 201 0 0 0 0 " + string(1000, 'x')));
    EXPECT_EQ(trapsToSend.back()->alertString.size(), 500U - 18);
}

TEST_F(Listener, GoesOnAfterABadSender) {
    const GPBIPCMsg command = message(0, 1, "1 2 3 201 0 0 0 0 x");
    fake_mgmt_sender::connections = {
        {.messages = {command, message(9, 9), command}, .failure = {}},
        {.messages = {}, .failure = {}},
        {.messages = {command}, .failure = "torn"},
        {.messages = {command}, .failure = {}},
    };
    std::promise<void> served;
    transcript::on("no more senders", [&](const string&) { served.set_value(); });
    ASSERT_EQ(StartMgmtMsgListener(), 0);
    served.get_future().wait();
    EXPECT_EQ(transcript::take(),
              "log 4 Received unknown mgmtMsg.cmdtype(): 9$\n"
              "log 4 Caught std::exception processing request: torn$\nno more senders\n");
    EXPECT_EQ(trapsToSend.size(), 4U);
    EXPECT_FALSE(abort_snmpSubagent);
}

TEST_F(Listener, EndsTheDaemonWithoutItsSocket) {
    fake_mgmt_sender::set_up_failure = "in use";
    EXPECT_EQ(MgmtMsgListenerMain(nullptr), reinterpret_cast<void*>(-1));
    EXPECT_EQ(transcript::take(),
              "log 4 Caught std::exception setting up management message listen socket: in use$\n");
    EXPECT_TRUE(abort_snmpSubagent);
}

}  // namespace
