#include <iostream>

#include "tools/checkconf/program.h"

int main(int argc, char** argv) {
    return checkconf::RunProgram(argc, argv, std::cout, std::cerr);
}
