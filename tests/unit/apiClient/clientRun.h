#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "tests/unit/words.h"
#include "tools/apiClient/program.h"

/** One run of the program, with its status and output. */
struct ClientRun {
    explicit ClientRun(const std::string& line) {
        const std::vector<std::string> words = Words("apiClient " + line);
        std::vector<const char*> argv;
        for (const std::string& word : words) {
            argv.push_back(word.c_str());
        }
        std::ostringstream out;
        std::ostringstream err;
        status = apiclient::RunProgram(static_cast<int>(argv.size()), argv.data(), out, err);
        output = out.str();
        errors = err.str();
    }

    int status;
    std::string output;
    std::string errors;
};
