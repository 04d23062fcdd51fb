#pragma once

#include <string>

#include "arraySim/control/commandParser.h"
#include "arraySim/control/statistics.h"
#include "arraySim/faults/faults.h"
#include "arraySim/model/model.h"

namespace arraysim {

/** The objects that commands act on; non-owning. */
struct CommandTargets {
    Model& model;
    FaultList& faults;
    const Statistics& statistics;
};

/**
 * Executes a command and returns the data of its reply. Throws CommandError without having changed anything.
 * The caller handles `event`, `misc`, `scsi`, `say` and `quit`, which act outside the CommandTargets.
 */
std::string RunCommand(CommandTargets& targets, const Command& command);

}  // namespace arraysim
