#include "tests/unit/common/fakeSleep.h"

#include "apiMgmt/common/platform/clock.h"

std::atomic<int64_t> now_of_test_us{0};
std::function<void(int64_t)> on_sleep = [](int64_t) {};

timeval ClockNow() {
    return {};
}
int64_t ClockNowUs() {
    return now_of_test_us;
}
int64_t ClockNowMs() {
    return 0;
}
void ClockSleepMicroseconds(int64_t duration_us) {
    on_sleep(duration_us);
}
