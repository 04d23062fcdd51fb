#pragma once

#include <atomic>
#include <cstdint>
#include <functional>

/** The clock of the test, in microseconds; it stands still. */
extern std::atomic<int64_t> now_of_test_us;

/** What a sleep does in this program: nothing, unless a test says so. Gets the duration in microseconds. */
extern std::function<void(int64_t)> on_sleep;
