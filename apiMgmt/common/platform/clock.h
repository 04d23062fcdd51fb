#pragma once

#include <sys/time.h>

#include <cstdint>

/** Clocks and sleep. Tests link a fake in place of clock.cpp. */

inline constexpr int64_t kMillisecondUs = 1000;
inline constexpr int64_t kSecondUs = 1000 * kMillisecondUs;

/** Returns the wall-clock time, for timestamps only: it jumps when the clock is set. */
timeval ClockNow();

/**
 * Returns microseconds for intervals and deadlines: a monotonic clock that starts at the wall-clock time of
 * the first call.
 */
int64_t ClockNowUs();

/** Returns ClockNowUs in milliseconds. */
int64_t ClockNowMs();

/** Blocks the calling thread for the full time, even if signals arrive. */
void ClockSleepMicroseconds(int64_t duration_us);
