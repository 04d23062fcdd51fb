#pragma once

#include <sys/time.h>

/**
 * Subtracts an earlier time from now, both on the clock of ClockNowUs. Microseconds are 0 to 999999. Seconds
 * are negative if the earlier time is in the future.
 */
void TimeSince(const timeval& earlier, timeval* elapsed);
