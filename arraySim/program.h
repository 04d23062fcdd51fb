#pragma once

namespace arraysim {

/** The command line of arraySim; returns the exit status. */
int RunProgram(int argc, char** argv);

}  // namespace arraysim
