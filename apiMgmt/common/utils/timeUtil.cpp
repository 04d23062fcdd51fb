#include "apiMgmt/common/utils/timeUtil.h"

#include "apiMgmt/common/platform/clock.h"

void TimeSince(const timeval& earlier, timeval* elapsed) {
    const int64_t now_us = ClockNowUs();
    timeval difference{static_cast<time_t>(now_us / kSecondUs) - earlier.tv_sec,
                       static_cast<suseconds_t>(now_us % kSecondUs) - earlier.tv_usec};
    if (difference.tv_usec < 0) {
        difference.tv_usec += kSecondUs;
        --difference.tv_sec;
    }
    *elapsed = difference;  // last, because elapsed may point to earlier
}
