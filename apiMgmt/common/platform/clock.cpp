#include "apiMgmt/common/platform/clock.h"

#include <poll.h>
#include <time.h>

#include <cerrno>

timeval ClockNow() {
    timeval now{};
    gettimeofday(&now, nullptr);
    return now;
}

int64_t ClockNowUs() {
    const timeval now = ClockNow();
    return static_cast<int64_t>(now.tv_sec) * 1'000'000 + now.tv_usec;
}

int64_t ClockNowMs() {
    return ClockNowUs() / 1000;
}

void ClockSleepMicroseconds(int64_t duration_us) {
    if (duration_us <= 0) {
        return;
    }
    // An end point instead of a duration, so that signals neither shorten nor stretch the sleep.
    timespec end{};
    clock_gettime(CLOCK_MONOTONIC, &end);
    end.tv_sec += static_cast<time_t>(duration_us / 1'000'000);
    end.tv_nsec += static_cast<long>(duration_us % 1'000'000) * 1000;
    if (end.tv_nsec >= 1'000'000'000) {
        end.tv_nsec -= 1'000'000'000;
        ++end.tv_sec;
    }
    while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &end, nullptr) == EINTR) {
    }
}

void ClockSleepUnlessReadable(int64_t duration_us, int descriptor) {
    pollfd watched{.fd = descriptor, .events = POLLIN, .revents = 0};
    const timespec limit{.tv_sec = static_cast<time_t>(duration_us / 1'000'000),
                         .tv_nsec = static_cast<long>(duration_us % 1'000'000) * 1000};
    ppoll(&watched, 1, &limit, nullptr);
}
