#include "apiMgmt/common/utils/standardOutput.h"
#include "arraySim/program.h"

// As a command that was refused: what was asked for is not there.
constexpr int kOutputLost = 1;

int main(int argc, char** argv) {
    return StatusAfterOutput("arraySim", arraysim::RunProgram(argc, argv), kOutputLost);
}
