#include "apiMgmt/common/platform/clock.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>

namespace {

volatile sig_atomic_t signals = 0;

}  // namespace

TEST(Clock, SignalsDoNotCutASleepShort) {
    struct sigaction action {};
    action.sa_handler = [](int) { signals = signals + 1; };
    sigaction(SIGALRM, &action, nullptr);
    const itimerval each_millisecond{{0, 1000}, {0, 1000}};
    setitimer(ITIMER_REAL, &each_millisecond, nullptr);
    const auto start = std::chrono::steady_clock::now();
    while (signals == 0) {
        ClockSleepMicroseconds(20'000);
        EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::microseconds(20'000));
    }
    const itimerval never{};
    setitimer(ITIMER_REAL, &never, nullptr);
}
