#include "apiMgmt/common/utils/timeUtil.h"

#include <gtest/gtest.h>

#include "apiMgmt/common/platform/clock.h"
#include "tests/unit/common/fakeSleep.h"

TEST(TimeUtil, TimeSinceBorrowsASecondAndTakesAMomentThatLiesAhead) {
    const std::tuple<timeval, timeval, timeval> cases[] = {
        {{10, 0}, {10, 0}, {0, 0}},
        {{10, 999'999}, {11, 0}, {0, 1}},
        {{10, 1}, {13, 0}, {2, 999'999}},
        {{10, 500'000}, {13, 500'000}, {3, 0}},
        {{10, 0}, {9, 999'999}, {-1, 999'999}},
        {{10, 5}, {8, 4}, {-3, 999'999}},
        {{0, 0}, {5'000'000'000, 7}, {5'000'000'000, 7}},
    };
    for (const auto& [earlier, now, each_elapsed] : cases) {
        now_of_test_us = now.tv_sec * kSecondUs + now.tv_usec;
        timeval elapsed = earlier;
        TimeSince(elapsed, &elapsed);
        EXPECT_EQ(elapsed.tv_sec, each_elapsed.tv_sec);
        EXPECT_EQ(elapsed.tv_usec, each_elapsed.tv_usec);
    }
}
