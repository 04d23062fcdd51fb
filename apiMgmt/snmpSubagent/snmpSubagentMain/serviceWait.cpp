#include "apiMgmt/snmpSubagent/snmpSubagentMain/serviceWait.h"

#include <algorithm>

#include "apiMgmt/common/platform/clock.h"
#include "apiMgmt/snmpSubagent/snmpSubagentComm/snmpSubagentComm.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/processState.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/supervisor.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/agentLibrary.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/requestPace.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/serviceWindow.h"

namespace {

// Bounds the delay after a SIGTERM that does not interrupt the wait, because it arrives just before it or on
// another thread.
constexpr int64_t kLongestStepUs = 100 * kMillisecondUs;

bool wait_for_array(int descriptor, short events, int timeout_ms) {
    if (wait_and_serve(descriptor, events, timeout_ms))
        return true;
    if (!snmpSubagent_is_active)
        throw WireLinkError("the daemon is about to exit");
    return false;
}

}  // namespace

bool wait_and_serve(int descriptor, short events, int timeout_ms) {
    const int64_t end_us = ClockNowUs() + timeout_ms * kMillisecondUs;
    for (int64_t left_us = end_us - ClockNowUs(); left_us > 0 && snmpSubagent_is_active;
         left_us = end_us - ClockNowUs()) {
        if (agent_wait(std::min(left_us, kLongestStepUs), descriptor, events))
            return true;
        process_agent_events();
        feed_watchdog();
    }
    return false;
}

serving_exchanges::serving_exchanges() {
    set_exchange_wait(wait_for_array);
}

serving_exchanges::~serving_exchanges() {
    set_exchange_wait(PollDescriptor);
}
