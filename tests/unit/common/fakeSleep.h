#pragma once

#include <cstdint>
#include <functional>

/** What a sleep does in this program: nothing, unless a test says so. Gets the duration in microseconds. */
extern std::function<void(int64_t)> on_sleep;
