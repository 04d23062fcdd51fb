#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "arraySim/control/words.h"
#include "arraySim/faults/faults.h"
#include "arraySim/model/incidents.h"
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

/** One row of the table of commands. */
struct VerbInfo {
    Verb verb;
    std::string_view name;
    std::string_view usage;
    std::string_view help;
};

std::span<const VerbInfo> VerbTable();

/** A command that has been understood; what it does not need stays empty. */
struct Command {
    Verb verb = Verb::kHelp;
    Selection selection;
    std::optional<uint32_t> index;
    std::string attribute;
    std::string text;  ///< value, file, text to say or to report, name of faults
    Condition condition = Condition::kDown;
    GivenValues values;
    Fault fault;
    uint32_t device_type = 0;  ///< of `scsi`
    uint32_t device_status = 0;
    uint32_t disk_row = 0;
};

/** Understands a command without looking at a model: verbs, kinds, attributes, numbers and faults are all
    checked. Throws CommandError. */
Command ParseCommand(const Catalogue& catalogue, const std::vector<std::string>& words);

/** The fault behind `fault`: NAME [args] [on KIND] [for N]. Throws CommandError. */
Fault ParseFault(const Catalogue& catalogue, std::vector<std::string> words);

/** The text of `help`. */
std::string HelpText();

}  // namespace arraysim
