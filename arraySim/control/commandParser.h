#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "arraySim/faults/faults.h"
#include "arraySim/model/conditions.h"
#include "arraySim/model/model.h"

namespace arraysim {

enum class Verb {
    kSet,
    kUnset,
    kFail,
    kRecover,
    kAdd,
    kRemove,
    kGet,
    kExpect,
    kList,
    kDump,
    kLoad,
    kFault,
    kFaults,
    kClear,
    kStats,
    kEvent,
    kMisc,
    kScsi,
    kSay,
    kHelp,
    kQuit
};

/** A parsed command. Members that it does not use are empty. */
struct Command {
    Verb verb = Verb::kHelp;
    Selection selection;
    std::optional<uint32_t> index;
    std::string attribute;
    std::string text;  ///< a value, a file, a message to print or report, or the name of a fault
    Condition condition = Condition::kDown;
    GivenValues values;
    Fault fault;
    uint32_t device_type = 0;  ///< of `scsi`
    uint32_t device_status = 0;
    uint32_t disk_row = 0;
};

/** Parses a command and checks its verb, kind, attribute, numbers and fault; needs no model. Throws
    CommandError. */
Command ParseCommand(const Catalogue& catalogue, const std::vector<std::string>& words);

/** Returns the output of `help`. */
std::string HelpText();

}  // namespace arraysim
