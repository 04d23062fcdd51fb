#pragma once

#include <sys/time.h>

/** Now minus the earlier time, both by ClockNowUs. Microseconds lie in 0 to 999999; seconds are negative when
 * the earlier time lies ahead. */
void TimeSince(const timeval& earlier, timeval* elapsed);
