#include "apiMgmt/snmpSubagent/snmpSubagentMain/mgmtMsgListener.h"

#include <future>

#include "apiMgmt/proto/apiMgrMsg.pb.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/processState.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/requestHandler.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/outstandingTraps.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapQueue.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"
#include "tests/unit/core/fakes/fakeMgmtSender.h"
#include "tests/unit/core/fakes/mibWorld.h"
#include "tests/unit/core/fakes/transcript.h"

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

TEST_F(Listener, SetsFlags) {
    handle(message(0, 2));
    EXPECT_TRUE(tempTest_requested);
    EXPECT_FALSE(displayTraps_requested);
    handle(message(0, 3));
    EXPECT_TRUE(displayTraps_requested);
    EXPECT_EQ(handle(message(0, 5)), "");
    EXPECT_EQ(handle(message(0, 4)), "log 7 Set verbose to True$\n");
    EXPECT_TRUE(verbose);
    const string course = handle(message(0, 5));
    EXPECT_NE(course.find("mgmtMsg.cmdspecific():5$\nlog 7 Set verbose to False$\n"), string::npos) << course;
    EXPECT_FALSE(verbose);
}

TEST_F(Listener, RefusesWhatItDoesNotKnow) {
    const string not_mgmt = "log 4 Invalid connection data: PDU is not a mgmt message$\n";
    GPBIPCMsg envelope = message(0, 1);
    envelope.set_msgtype(protoIPCMsg::APIRequest);
    EXPECT_EQ(handle(envelope), not_mgmt);
    envelope.set_msgtype(protoIPCMsg::MGMT);
    envelope.clear_mgmtmsg();
    EXPECT_EQ(handle(envelope), not_mgmt);
    EXPECT_EQ(handle(message(1, 1)), "log 4 Received unknown mgmtMsg.cmdtype(): 1$\n");
    for (const uint32_t specific : {0U, 6U, 4294967295U})
        EXPECT_EQ(handle(message(0, specific)), "log 4 Received unknown mgmtMsg.cmdspecific(): " +
                                                    std::to_string(static_cast<int>(specific)) + "$\n");
    GPBIPCMsg absent = message(0, 1);
    absent.mutable_mgmtmsg()->clear_cmdspecific();
    EXPECT_EQ(handle(absent), "log 4 Received unknown mgmtMsg.cmdspecific(): 0$\n");
    verbose = true;
    // Every envelope was counted, and those with a good command type.
    EXPECT_EQ(handle(message(0, 2)),
              "log 7 Received MGMTCommand_SPECIFIC: accept_counter=8, cmd_specific_counter=5, "
              "mgmtMsg.cmdspecific():2$\n");
    EXPECT_TRUE(trapsToSend.empty());
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
