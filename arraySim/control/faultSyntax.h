#pragma once

#include <string>
#include <vector>

#include "arraySim/faults/faults.h"

namespace arraysim {

/** Parses the words after `fault`: NAME [args] [on KIND] [for N]. Throws CommandError. */
Fault ParseFault(const Catalogue& catalogue, std::vector<std::string> words);

/** Returns the command that adds the fault. */
std::string FaultCommand(const Fault& fault);

}  // namespace arraysim
