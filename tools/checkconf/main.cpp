#include <iostream>

#include "apiMgmt/common/utils/standardOutput.h"
#include "tools/checkconf/program.h"

// Nobody knows that all is well.
constexpr int kOutputLost = 2;

int main(int argc, char** argv) {
    return StatusAfterOutput("snmpSubagent-checkconf",
                             checkconf::RunProgram(argc, argv, std::cout, std::cerr), kOutputLost);
}
