#pragma once

#include <optional>

/**
 * Answers --help, --version and every other argument that begins with "-", which the daemon does not accept.
 * Returns the exit status of the process, or nothing when the daemon must start.
 */
std::optional<int> answer_options(int argc, const char* const argv[]);
