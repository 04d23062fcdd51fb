#include "apiMgmt/snmpSubagent/snmpSubagentMain/mgmtMsgListener.h"

#include <pthread.h>

#include <cstdint>
#include <exception>
#include <functional>

#include "apiMgmt/common/platform/clock.h"
#include "apiMgmt/common/utils/generalUtils.h"
#include "apiMgmt/common/wirelink/wireLink.h"
#include "apiMgmt/proto/apiMgrMsg.pb.h"
#include "apiMgmt/proto/mgmtCommands.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/processState.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/requestHandler.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/outstandingTraps.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapQueue.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

namespace {

// Keeps an accept that fails repeatedly from spinning.
constexpr int64_t kPauseAfterFailedAcceptUs = 100 * kMillisecondUs;

// Since process start; listener thread only.
int32_t accept_counter = 0;
int32_t cmd_specific_counter = 0;

// A command that is too short is ignored silently.
void queue_command(const std::string& text) {
    char scratch[kTrapCommandBuffer];
    ParseTrapCommand(text.c_str(), scratch, sizeof scratch);
}

void act_on(const protoIPCMsg::MGMTMsg& message) {
    switch (message.cmdspecific()) {
        case MGMT_SPECIFIC_SEND_TRAP:
            queue_command(message.addlarg());
            break;
        case MGMT_SPECIFIC_TEMP_TEST:
            tempTest_requested = true;
            break;
        case MGMT_SPECIFIC_DISPLAY_TRAPS:
            displayTraps_requested = true;
            break;
        case MGMT_SPECIFIC_VERBOSE_ON:
            verbose = true;
            SUBAGENT_LOG(debug, "Set verbose to True\n");
            break;
        case MGMT_SPECIFIC_VERBOSE_OFF:
            SUBAGENT_LOG(debug, "Set verbose to False\n");
            verbose = false;
            break;
        default:
            SUBAGENT_LOG(warning, "Received unknown mgmtMsg.cmdspecific(): %d\n",
                         static_cast<int>(message.cmdspecific()));
    }
}

// Runs the step. Returns false, after logging the exception, if it threw.
bool succeeds(const std::function<void()>& step) {
    try {
        step();
        return true;
    } catch (const std::exception& error) {
        SUBAGENT_LOG(warning, "Caught std::exception processing request: %s\n", error.what());
    } catch (...) {
        SUBAGENT_LOG(warning, "Caught unknown exception processing request\n");
    }
    return false;
}

void serve_connection(const WireLinkEndpoint& endpoint, int descriptor) {
    WireLinkServerConnection connection(endpoint, descriptor);
    protoIPCMsg::GPBIPCMsg envelope;
    while (connection.RecvGPBMsg(envelope) != 0)
        HandleMgmtMsg(envelope);
}

// A bad sender neither stops the listener nor delays the next sender.
[[noreturn]] void serve_connections(WireLinkServer& server, const WireLinkEndpoint& endpoint) {
    for (;;) {
        int descriptor = -1;
        if (succeeds([&] { descriptor = server.Accept(nullptr, nullptr, 0); }))
            succeeds([&] { serve_connection(endpoint, descriptor); });
        else
            ClockSleepMicroseconds(kPauseAfterFailedAcceptUs);
    }
}

}  // namespace

void HandleMgmtMsg(const protoIPCMsg::GPBIPCMsg& envelope) {
    ++accept_counter;
    if (envelope.msgtype() != protoIPCMsg::MGMT || !envelope.has_mgmtmsg()) {
        SUBAGENT_LOG(warning, "Invalid connection data: PDU is not a mgmt message\n");
        return;
    }
    const protoIPCMsg::MGMTMsg& message = envelope.mgmtmsg();
    if (message.cmdtype() != MGMTCommand_SPECIFIC) {
        SUBAGENT_LOG(warning, "Received unknown mgmtMsg.cmdtype(): %d\n",
                     static_cast<int>(message.cmdtype()));
        return;
    }
    ++cmd_specific_counter;
    SUBAGENT_LOG(debug,
                 "Received MGMTCommand_SPECIFIC: accept_counter=%d, cmd_specific_counter=%d, "
                 "mgmtMsg.cmdspecific():%d\n",
                 accept_counter, cmd_specific_counter, static_cast<int>(message.cmdspecific()));
    act_on(message);
}

void* MgmtMsgListenerMain(void* /*argument*/) {
    try {
        const WireLinkEndpoint& endpoint = GENERALUtils::GetEndpoint(ENDPOINT_SNMPSUBAGENT);
        WireLinkServer server(endpoint);
        serve_connections(server, endpoint);
    } catch (const std::exception& error) {
        SUBAGENT_LOG(warning, "Caught std::exception setting up management message listen socket: %s\n",
                     error.what());
    } catch (...) {
        SUBAGENT_LOG(warning, "Caught unknown exception setting up management message listen socket\n");
    }
    abort_snmpSubagent = true;
    return reinterpret_cast<void*>(-1);
}

int StartMgmtMsgListener() {
    pthread_t thread;
    const int error = pthread_create(&thread, nullptr, MgmtMsgListenerMain, nullptr);
    if (error != 0) {
        SUBAGENT_LOG(warning, "Error: Failed to create mgmt msg listener thread: error: %d\n", error);
        return 1;
    }
    pthread_detach(thread);
    return 0;
}
