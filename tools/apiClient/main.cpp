#include <iostream>

#include "apiMgmt/common/utils/standardOutput.h"
#include "tools/apiClient/program.h"

// As when no answer came: the caller has none.
constexpr int kOutputLost = 1;

int main(int argc, char** argv) {
    return StatusAfterOutput("apiClient", RunProgram(argc, argv, std::cout, std::cerr), kOutputLost);
}
