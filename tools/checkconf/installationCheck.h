#pragma once

#include <string>

#include "tools/checkconf/report.h"

namespace checkconf {

/**
 * Checks all files, programs and directories that the daemon needs, in the order in which it uses them. root:
 * the directory that is the root directory of the checked machine.
 */
void CheckInstallation(const std::string& root, Report& report);

}  // namespace checkconf
