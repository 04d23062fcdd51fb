#include "apiMgmt/common/platform/clock.h"

#include <time.h>

#include <cerrno>

namespace {

int64_t read_us(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<int64_t>(now.tv_sec) * kSecondUs + now.tv_nsec / 1000;
}

}  // namespace

timeval ClockNow() {
    timeval now{};
    gettimeofday(&now, nullptr);
    return now;
}

int64_t ClockNowUs() {
    static const int64_t origin_us = read_us(CLOCK_REALTIME) - read_us(CLOCK_MONOTONIC);
    return origin_us + read_us(CLOCK_MONOTONIC);
}

int64_t ClockNowMs() {
    return ClockNowUs() / 1000;
}

void ClockSleepMicroseconds(int64_t duration_us) {
    if (duration_us <= 0) {
        return;
    }
    timespec left{.tv_sec = static_cast<time_t>(duration_us / kSecondUs),
                  .tv_nsec = static_cast<long>(duration_us % kSecondUs) * 1000};
    while (nanosleep(&left, &left) != 0 && errno == EINTR) {
    }
}
