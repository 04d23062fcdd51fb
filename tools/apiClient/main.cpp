#include <iostream>

#include "apiMgmt/common/utils/standardOutput.h"
#include "tools/apiClient/program.h"

// The same status as without a response: in both cases, the caller has none.
constexpr int kOutputLost = 1;

int main(int argc, char** argv) {
    return StatusAfterOutput("apiClient", apiclient::RunProgram(argc, argv, std::cout, std::cerr),
                             kOutputLost);
}
