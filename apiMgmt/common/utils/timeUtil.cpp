#include "apiMgmt/common/utils/timeUtil.h"

#include "apiMgmt/common/platform/clock.h"

void TimeSince(const timeval& earlier, timeval* elapsed) {
    const timeval now = ClockNow();
    timeval difference{now.tv_sec - earlier.tv_sec, now.tv_usec - earlier.tv_usec};
    if (difference.tv_usec < 0) {
        difference.tv_usec += 1'000'000;
        --difference.tv_sec;
    }
    *elapsed = difference;  // last, since elapsed may point to earlier
}
