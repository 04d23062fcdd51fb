#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

/** Aborts with a message, which the engine reports as a finding. */
[[noreturn]] inline void FuzzFail(const std::string& what) {
    std::fprintf(stderr, "fuzz: %s\n", what.c_str());
    std::abort();
}

/** Calls FuzzFail unless `holds`. */
inline void FuzzCheck(bool holds, const char* what) {
    if (!holds)
        FuzzFail(what);
}
