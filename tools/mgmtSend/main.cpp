#include <iostream>

#include "tools/mgmtSend/program.h"

int main(int argc, char** argv) {
    return RunProgram(argc, argv, std::cin, std::cout, std::cerr);
}
