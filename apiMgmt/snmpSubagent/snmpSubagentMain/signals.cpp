#include "apiMgmt/snmpSubagent/snmpSubagentMain/signals.h"

#include <csignal>

#include <atomic>
#include <cstdint>
#include <ctime>

#include "apiMgmt/common/platform/clock.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/processState.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

namespace {

constexpr int64_t kSigpipeQuiet_us = 10 * kSecondUs;

// Signals that the main thread has yet to log.
std::atomic<int> sigterms_to_log{0};
std::atomic<int> sigints_to_log{0};
std::atomic<bool> sigpipe_to_log{false};

// Written only by catch_sigpipe.
std::atomic<int64_t> last_sigpipe_time_us{-kSigpipeQuiet_us};

static_assert(std::atomic<int>::is_always_lock_free && std::atomic<int64_t>::is_always_lock_free &&
                  std::atomic<bool>::is_always_lock_free,
              "a handler may touch lock-free atomics only");

}  // namespace

void catch_sigterm(int) {
    ++sigterms_to_log;
    snmpSubagent_is_active = false;
}

void catch_sigint(int) {
    ++sigints_to_log;
}

void catch_sigpipe(int) {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    const int64_t now_us = int64_t{now.tv_sec} * kSecondUs + now.tv_nsec / 1000;
    if (now_us - last_sigpipe_time_us < kSigpipeQuiet_us)
        return;
    last_sigpipe_time_us = now_us;
    sigpipe_to_log = true;
}

void install_signal_handlers() {
    signal(SIGTERM, catch_sigterm);
    signal(SIGINT, catch_sigint);
    signal(SIGPIPE, catch_sigpipe);
}

void log_caught_signals() {
    for (int count = sigterms_to_log.exchange(0); count > 0; --count)
        SUBAGENT_LOG(warning, "(((((((((((((((((( SIGTERM ))))))))))))))))))))\n");
    for (int count = sigints_to_log.exchange(0); count > 0; --count)
        SUBAGENT_LOG(warning, "(((((((((((((((((( SIGINT ))))))))))))))))))))\n");
    if (sigpipe_to_log.exchange(false))
        SUBAGENT_LOG(debug, "(((((((((((((((((( SIGPIPE ))))))))))))))))))))\n");
}
