#pragma once

#include <string>

#include "tools/checkconf/report.h"

namespace checkconf {

/**
 * Checks the settings file: what the daemon reads from it, and every line that its parser interprets
 * differently from what a person would expect. Reads the settings into the daemon's variables, which
 * CheckMasterAgent needs.
 */
void CheckSettings(const std::string& path, Report& report);

}  // namespace checkconf
