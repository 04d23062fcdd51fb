#pragma once

#include <optional>

#include "tools/commandLine/completion.h"

namespace apiclient {

/**
 * Returns what the last word of a command line can become, as far as the catalogue knows it: objects,
 * commands, arguments, values of enumerations, conditions and columns.
 */
std::optional<commandline::Candidates> FindCandidates(const commandline::UnfinishedLine& line);

}  // namespace apiclient
