#include <iostream>

#include "apiMgmt/common/utils/standardOutput.h"
#include "tools/mgmtSend/program.h"

// A failure of the world, as a daemon that cannot be reached.
constexpr int kOutputLost = 1;

int main(int argc, char** argv) {
    return StatusAfterOutput("mgmtSend", RunProgram(argc, argv, std::cin, std::cout, std::cerr), kOutputLost);
}
