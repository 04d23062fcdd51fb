#include "apiMgmt/common/utils/standardOutput.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iostream>

int StatusAfterOutput(const char* program, int status, int lost_status) {
    std::cout.flush();
    errno = 0;
    const bool is_flushed = std::fflush(stdout) == 0;
    // An earlier write may already have failed, leaving nothing to flush.
    if (is_flushed && std::ferror(stdout) == 0 && std::cout) {
        return status;
    }
    std::fprintf(stderr, "%s: standard output could not be written: %s\n", program,
                 errno == 0 ? "output was lost" : std::strerror(errno));
    return status == 0 ? lost_status : status;
}
