#include "apiMgmt/common/utils/timeUtil.h"

#include <gtest/gtest.h>

#include "apiMgmt/common/platform/clock.h"

namespace {

timeval now;

}  // namespace

timeval ClockNow() {
    return now;
}
int64_t ClockNowMs() {
    return 0;
}
void ClockSleepMicroseconds(int64_t) {}

TEST(TimeUtil, TimeSinceBorrowsASecondAndSurvivesAClockThatGoesBack) {
    const struct {
        timeval earlier, now, elapsed;
    } cases[] = {
        {{10, 0}, {10, 0}, {0, 0}},
        {{10, 999'999}, {11, 0}, {0, 1}},
        {{10, 1}, {13, 0}, {2, 999'999}},
        {{10, 500'000}, {13, 500'000}, {3, 0}},
        {{10, 0}, {9, 999'999}, {-1, 999'999}},
        {{10, 5}, {8, 4}, {-3, 999'999}},
        {{0, 0}, {5'000'000'000, 7}, {5'000'000'000, 7}},
    };
    for (const auto& c : cases) {
        now = c.now;
        timeval elapsed = c.earlier;
        TimeSince(elapsed, &elapsed);
        EXPECT_EQ(elapsed.tv_sec, c.elapsed.tv_sec);
        EXPECT_EQ(elapsed.tv_usec, c.elapsed.tv_usec);
    }
}
