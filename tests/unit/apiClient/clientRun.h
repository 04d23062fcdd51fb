#pragma once

#include <sstream>
#include <string>

#include "tests/unit/words.h"
#include "tools/apiClient/program.h"

/** One run of the program, with its status and output. */
struct ClientRun {
    explicit ClientRun(const std::string& line) {
        Arguments arguments("apiClient " + line);
        std::ostringstream out;
        std::ostringstream err;
        status = apiclient::RunProgram(arguments.count(), arguments.values(), out, err);
        output = out.str();
        errors = err.str();
    }

    int status;
    std::string output;
    std::string errors;
};
