#include "apiMgmt/common/utils/timeUtil.h"

#include <gtest/gtest.h>

#include "apiMgmt/common/platform/clock.h"

namespace {

int64_t now_us;

}  // namespace

int64_t ClockNowUs() {
    return now_us;
}

TEST(TimeUtil, TimeSinceBorrowsASecondAndTakesAMomentThatLiesAhead) {
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
        now_us = c.now.tv_sec * kSecondUs + c.now.tv_usec;
        timeval elapsed = c.earlier;
        TimeSince(elapsed, &elapsed);
        EXPECT_EQ(elapsed.tv_sec, c.elapsed.tv_sec);
        EXPECT_EQ(elapsed.tv_usec, c.elapsed.tv_usec);
    }
}
