#include "tools/arraySim/program.h"

int main(int argc, char** argv) {
    return arraysim::RunProgram(argc, argv);
}
