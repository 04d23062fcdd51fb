#pragma once

#include <string>

#include "arraySim/control/commandParser.h"
#include "arraySim/control/statistics.h"
#include "arraySim/faults/faults.h"
#include "arraySim/model/model.h"

namespace arraysim {

/** What commands act on. */
struct CommandWorld {
    Model& model;
    FaultList& faults;
    const Statistics& statistics;
};

/**
 * Carries out a command and returns the data of its reply. Throws CommandError; then nothing has changed.
 * `event`, `misc`, `scsi`, `say` and `quit` act outside the world and are left to the caller.
 */
std::string RunCommand(CommandWorld& world, const Command& command);

}  // namespace arraysim
