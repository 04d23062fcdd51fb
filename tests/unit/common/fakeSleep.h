#pragma once

#include <atomic>
#include <cstdint>
#include <functional>

/** The clock of the test, in microseconds. It does not advance by itself. */
extern std::atomic<int64_t> now_of_test_us;

/** Called by each sleep with the duration in microseconds. By default, does nothing. */
extern std::function<void(int64_t)> on_sleep;
