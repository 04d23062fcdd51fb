#include <iostream>

#include "apiMgmt/common/utils/standardOutput.h"
#include "tools/mgmtSend/program.h"

// The same status as for an unreachable daemon: the environment has failed, not the command line.
constexpr int kOutputLost = 1;

int main(int argc, char** argv) {
    return StatusAfterOutput("mgmtSend", mgmtsend::RunProgram(argc, argv, std::cin, std::cout, std::cerr),
                             kOutputLost);
}
