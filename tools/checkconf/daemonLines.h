#pragma once

#include <string>
#include <vector>

namespace checkconf {

/**
 * What the daemon's own code has logged since the last call, without newlines. Here its log is this list:
 * nothing goes to the daemon's log file.
 */
std::vector<std::string> TakeDaemonLines();

}  // namespace checkconf
