#pragma once

#include <cstdint>

/** A clock that advances only when a test moves it or the main thread sleeps. When another thread sleeps, it
    waits for a moment without advancing the clock. Any thread. */
namespace fake_clock {

/** The time at the start of a test: far from 0 and from a whole second. */
inline constexpr int64_t kStart_us = 1'700'000'000'250'000;

void set(int64_t now_us);
void advance(int64_t duration_us);

/** Performs a sleep. */
void pass(const char* kind, int64_t duration_us);

/** Sets whether sleeps are lines "sleep N us" of the transcript; initially not. */
void write_sleeps(bool write);

}  // namespace fake_clock
