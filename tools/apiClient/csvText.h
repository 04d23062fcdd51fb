#pragma once

#include <string>
#include <vector>

#include "tools/apiClient/records.h"

/**
 * A result for spreadsheets: a line with the names of the attributes, then a line an object; fields that hold
 * a comma, a quotation mark or a line feed in quotation marks. columns: which, empty for all. A single value
 * stands under the name "Value"; nothing gives nothing. Throws UsageError for an unknown column.
 */
std::string CsvText(const Result& result, const std::vector<std::string>& columns);
