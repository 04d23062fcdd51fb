#pragma once

#include <cstdint>

/** The clock of the test: stands still except where it is moved, and where the main thread sleeps. Another
    thread that sleeps waits a moment and leaves it alone. Any thread. */
namespace fake_clock {

/** Where it stands when a test begins: far from 0 and from a whole second. */
inline constexpr int64_t kStart_us = 1'700'000'000'250'000;

void set(int64_t now_us);
void advance(int64_t duration_us);

/** What a sleep does. */
void pass(const char* kind, int64_t duration_us);

/** Sleeps become lines "sleep N us" of the transcript. Off when a test begins. */
void write_sleeps(bool write);

}  // namespace fake_clock
