#pragma once

#include <string>
#include <vector>

namespace checkconf {

/**
 * Returns what the daemon's own code has logged since the last call, without newlines. This unit replaces the
 * daemon's log: nothing is written to its log file.
 */
std::vector<std::string> TakeDaemonLog();

}  // namespace checkconf
