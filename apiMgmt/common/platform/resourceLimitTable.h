#pragma once

#include <span>

/** One limit that this system knows: its number for getrlimit, and what people call it. */
struct ResourceLimit {
    int number;
    const char* name;
    const char* description;
};

/** The limits of this system, in the order in which they are listed. */
std::span<const ResourceLimit> ResourceLimitTable();
