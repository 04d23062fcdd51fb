#pragma once

#include <span>

/** A resource limit of this system: its number for getrlimit, its name and a description. */
struct ResourceLimit {
    int number;
    const char* name;
    const char* description;
};

/** Returns the limits of this system, in the order of the report. */
std::span<const ResourceLimit> ResourceLimitTable();
