#pragma once

#include <sys/time.h>

#include <cstdint>

/** The one way to the wall clock and to sleep. Tests link a clock of their own in place of clock.cpp. */

inline constexpr int64_t kMillisecondUs = 1000;
inline constexpr int64_t kSecondUs = 1000 * kMillisecondUs;

/** Wall clock, seconds and microseconds. */
timeval ClockNow();

/** Wall clock in milliseconds since the epoch. */
int64_t ClockNowMs();

/** The same in microseconds. */
int64_t ClockNowUs();

/** Sleeps on the calling thread; signals do not cut it short. */
void ClockSleepMicroseconds(int64_t duration_us);

/** The same, ended when the descriptor can be read (-1: none), or by a signal. */
void ClockSleepUnlessReadable(int64_t duration_us, int descriptor);
