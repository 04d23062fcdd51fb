#pragma once

#include <string>

#include "tools/checkconf/report.h"

namespace checkconf {

/** All checks of the files below a folder, in the order in which the daemon comes to them. */
void CheckAll(const std::string& root, Report& report);

/** The settings. Reads them into the daemon's variables, which CheckMasterAgent needs. */
void CheckSettings(const std::string& path, Report& report);

/** snmpd's file, as far as the daemon depends on it. */
void CheckMasterAgent(const std::string& path, Report& report);

}  // namespace checkconf
