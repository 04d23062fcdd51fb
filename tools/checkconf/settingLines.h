#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/checkconf/report.h"

namespace checkconf {

/** Warns of every line of a settings file that the daemon's reader takes otherwise than a person would. */
void CheckSettingLines(const std::string& path, Report& report);

/** Number of the line in which a place of a text stands, from 1. */
size_t LineNumber(std::string_view text, size_t place);

}  // namespace checkconf
