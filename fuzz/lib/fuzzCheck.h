#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

/** Ends the process, as a sanitizer does, when something that must hold does not. */
inline void FuzzCheck(bool holds, const std::string& what) {
    if (holds)
        return;
    std::fprintf(stderr, "fuzz: %s\n", what.c_str());
    std::abort();
}
