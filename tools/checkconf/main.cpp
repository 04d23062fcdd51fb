#include <iostream>

#include "apiMgmt/common/utils/standardOutput.h"
#include "tools/checkconf/program.h"

// The same status as for errors: the caller must not take lost output for success.
constexpr int kOutputLost = 2;

int main(int argc, char** argv) {
    return StatusAfterOutput("snmpSubagent-checkconf",
                             checkconf::RunProgram(argc, argv, std::cout, std::cerr), kOutputLost);
}
