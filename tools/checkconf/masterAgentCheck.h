#pragma once

#include <string>

#include "tools/checkconf/report.h"

namespace checkconf {

/** Checks those parts of snmpd.conf that the daemon depends on. Needs the settings that CheckSettings reads.
 */
void CheckMasterAgent(const std::string& path, Report& report);

}  // namespace checkconf
