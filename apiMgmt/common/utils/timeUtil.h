#pragma once

#include <sys/time.h>

/** Now minus the earlier time. Microseconds lie in 0 to 999999; seconds are negative when the clock went
 * back. */
void TimeSince(const timeval& earlier, timeval* elapsed);
