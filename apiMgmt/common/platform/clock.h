#pragma once

#include <sys/time.h>

#include <cstdint>

/** The one way to the clocks and to sleep. Tests link a clock of their own in place of clock.cpp. */

inline constexpr int64_t kMillisecondUs = 1000;
inline constexpr int64_t kSecondUs = 1000 * kMillisecondUs;

/** Wall clock, seconds and microseconds: for what people read. It jumps when somebody sets it. */
timeval ClockNow();

/** Microseconds for intervals and deadlines: starts at the wall clock of the first call, and is steady from
   then on even if the wall clock is set. */
int64_t ClockNowUs();

/** The same in milliseconds. */
int64_t ClockNowMs();

/** Sleeps on the calling thread; signals do not cut it short. */
void ClockSleepMicroseconds(int64_t duration_us);
