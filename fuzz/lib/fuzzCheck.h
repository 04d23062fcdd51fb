#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

/** Ends the process, as a sanitizer does. */
[[noreturn]] inline void FuzzFail(const std::string& what) {
    std::fprintf(stderr, "fuzz: %s\n", what.c_str());
    std::abort();
}

/** The same when something that must hold does not. */
inline void FuzzCheck(bool holds, const char* what) {
    if (!holds)
        FuzzFail(what);
}
