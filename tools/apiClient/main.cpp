#include <iostream>

#include "tools/apiClient/program.h"

int main(int argc, char** argv) {
    return RunProgram(argc, argv, std::cout, std::cerr);
}
