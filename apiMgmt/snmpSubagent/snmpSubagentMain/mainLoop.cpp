#include "apiMgmt/snmpSubagent/snmpSubagentMain/mainLoop.h"

#include <poll.h>

#include "apiMgmt/common/platform/clock.h"
#include "apiMgmt/snmpSubagent/snmpSubagentComm/snmpSubagentComm.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/backgroundUpdate.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/masterAgent.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/processState.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/serviceWait.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/settings/subagentConf.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/shellCommand.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/signals.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/statusFile.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/supervisor.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/agentLibrary.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/requestHandler.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/serviceWindow.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/setRequest.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/outstandingCheck.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/outstandingTraps.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapCommand.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapQueue.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

// One iteration. Requests are also served whenever it waits for the array (serviceWait.h):
//   rest             until something arrives, 10 ms at most
//   tables           scan once for a table to refresh
//   array            send one value that a manager has SET
//   events           process one queued trap command, then re-check one outstanding object
//   log file         reopen it if it was moved, truncate it if it is too long
//   links            test the API manager, then the master agent, if silent for more than 2 seconds
//   memory           check that of snmpd every 3 seconds
//   requests         the window in which SNMP is served

namespace {

constexpr int64_t kRestUs = 10 * kMillisecondUs;
constexpr int64_t kServiceUs = 10 * kMillisecondUs;
constexpr int64_t kLogCareUs = 100 * kMillisecondUs;
constexpr time_t kSilence_s = 2;
constexpr int kMaximumStrikes = 3;
constexpr int kStrikeSleep_ms = 15'000;

int leave(int result) {
    log_caught_signals();
    SUBAGENT_LOG(debug, "exiting main_loop\n");
    return result;
}

// A request ends the wait. A trap command does so only while the array can be asked about its object.
void rest() {
    agent_wait(kRestUs, snmpSubagentComm->apimgr_ok() ? trap_queue_descriptor() : -1, POLLIN);
}

void serve_events() {
    if (tempTest_requested)
        SnmpSubagentMibHandlers::handleTempTest();
    if (snmpSubagentComm->apimgr_ok())
        process_oldest_trap([](TrapToSend& trap) { processSendTrapCmd(trap, false); });
    if (sendTestTrap && snmpSubagentComm->apimgr_ok()) {
        sendTestTrap = false;
        send_test_trap();
    }
    if (displayTraps_requested)
        handleDisplayOutstandingTraps();
    check_outstanding_traps();
}

// Serves pending requests, for at most this long. One request takes several events of the agent library.
void serve_for(int64_t limit_us) {
    const int64_t end_us = ClockNowUs() + limit_us;
    while (process_agent_events() && ClockNowUs() < end_us) {
    }
}

void maintain_log() {
    log_caught_signals();
    static int64_t next_us = 0;  // each check is a system call
    if (ClockNowUs() < next_us)
        return;
    next_us = ClockNowUs() + kLogCareUs;
    reopen_redirected_log();
    truncate_subagent_log();
}

bool apimgr_was_silent() {
    timeval silence{};
    snmpSubagentComm->time_since_apimgr_ok(&silence);
    return silence.tv_sec > kSilence_s;
}

bool agentx_was_silent() {
    timeval silence{};
    snmpSubagentComm->time_since_agentx_ok(&silence);
    return silence.tv_sec > kSilence_s;
}

// Outcome of a check of the links.
enum class links {
    good,        // continue the iteration
    stop,        // SIGTERM has arrived
    struck,      // the API manager did not respond: start the next iteration
    struck_out,  // it did not respond for the third time: exit without starting a new copy
    agent_lost,  // exit and start a new copy
};

// Tests the lost link to the API manager completely. Success does not clear the strikes, so that the next
// iteration logs the recovery.
links test_lost_apimgr(int* strikes_against_apimgr) {
    SUBAGENT_LOG(debug, "connection to apimgr is Not okay\n");
    if (!snmpSubagent_is_active)
        return links::stop;
    if (test_apimgr() == 0)
        return links::good;
    if (++*strikes_against_apimgr == kMaximumStrikes) {
        SUBAGENT_LOG(warning, "failed interface test to apimgr: 3 retries and no connect.\n");
        return links::struck_out;
    }
    SUBAGENT_LOG(warning,
                 "failed interface test to apimgr: strikes_against_apimgr = %d out of 3: we'll retry after a "
                 "sleep of 15 sec\n",
                 *strikes_against_apimgr);
    wait_and_serve(-1, 0, kStrikeSleep_ms);
    return links::struck;
}

links test_master_agent() {
    bool is_due = agentx_was_silent();
    if (!agent_has_main_session()) {
        SUBAGENT_LOG(warning, "main-session went down\n");
        if (!snmpSubagent_is_active)
            return links::stop;
        if (!agent_has_main_session())
            return links::agent_lost;
        is_due = true;  // reconnected: test it immediately
    }
    if (!is_due)
        return links::good;
    // Requests that arrived during a long iteration must be served before the ping, which rejects all pending
    // ones. The last self-test's request may be among them.
    serve_for(kSecondUs);
    return ping_agentx_master() == 0 && check_snmpget() == 0 ? links::good : links::agent_lost;
}

links check_links(int* strikes_against_apimgr) {
    if (!snmpSubagentComm->apimgr_ok())
        return test_lost_apimgr(strikes_against_apimgr);
    if (!snmpSubagent_is_active)
        return links::stop;
    if (apimgr_was_silent() && snmpSubagentComm->TestAccessToApiMgr() != 0) {
        SUBAGENT_LOG(warning, "Error on ApiMgr-ping.\n");
        if (!snmpSubagent_is_active)
            return links::stop;
    }
    if (!snmpSubagentComm->apimgr_ok())
        return test_lost_apimgr(strikes_against_apimgr);
    if (*strikes_against_apimgr != 0)
        SUBAGENT_LOG(warning, "interface to apimgr has been recovered before reached 3 strikes\n");
    const links verdict = test_master_agent();
    if (verdict == links::good)
        *strikes_against_apimgr = 0;
    return verdict;
}

// The new copy kills snmpd and starts another. A broken chain is never repaired in place.
void start_new_copy() {
    SUBAGENT_LOG(warning,
                 "main-session down, or error on agentx-ping, or failed self-test: will try a restart...\n");
    // The whole command runs in the background: during its second of sleep this copy removes its pid file,
    // kills snmpd and exits.
    if (snmpSubagent_is_active)
        run_command("(" + restart_command + ") &");
}

void watch_snmpd_memory() {
    const int64_t now_us = ClockNowUs();
    if ((now_us - last_mem_check_time_us) / kSecondUs <= kSilence_s)
        return;
    if (snmpd_using_too_much_mem())
        kill_snmpd();
    last_mem_check_time_us = ClockNowUs();
}

}  // namespace

int main_loop() {
    int strikes_against_apimgr = 0;
    const serving_exchanges scope;
    while (snmpSubagent_is_active && !abort_snmpSubagent) {
        feed_watchdog();
        update_status_file();
        rest();
        check_for_table_changes();
        if (!snmpSubagent_is_active)
            return leave(1);
        perform_queued_set();
        serve_events();
        if (!snmpSubagent_is_active)
            return leave(1);
        maintain_log();
        switch (check_links(&strikes_against_apimgr)) {
            case links::good:
                break;
            case links::struck:
                continue;
            case links::stop:
            case links::struck_out:
                return leave(1);
            case links::agent_lost:
                start_new_copy();
                return leave(1);
        }
        watch_snmpd_memory();
        serve_for(kServiceUs);
    }
    log_caught_signals();
    SUBAGENT_LOG(warning, "popped out of main_loop: snmpSubagent_is_active=%d, abort_snmpSubagent=%d\n",
                 snmpSubagent_is_active.load(), abort_snmpSubagent.load());
    return leave(0);
}
