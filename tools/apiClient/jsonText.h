#pragma once

#include <string>
#include <vector>

#include "tools/apiClient/records.h"

/**
 * A result for programs: a list of objects, an object, a value, or null. Numbers, truth values, lists and
 * references are what they are in JSON, everything else the API's text; an attribute that an object lacks is
 * left out. columns: which, empty for all. Throws UsageError for an unknown column.
 */
std::string JsonText(const Result& result, const std::vector<std::string>& columns);
