#pragma once

#include <string>
#include <vector>

#include "tools/apiClient/records.h"

namespace apiclient {

/** What to show of a result, and how. */
struct FormatOptions {
    std::vector<std::string> columns;  ///< empty: all, but in the table of a list only those that fit
    bool readable = false;             ///< sizes with units, names of references and enumerated values
    size_t width = 120;                ///< of a table's lines, in characters, if the columns are not chosen
};

// All of these throw UsageError for an unknown column.

/**
 * Formats a human-readable result: a list as a table with labels, a single object with one attribute per
 * line. Columns are at least as wide as their attribute requires. Nothing is truncated: a longer value widens
 * its column.
 */
std::string FormatTable(const Result& result, const FormatOptions& options);

/**
 * Formats a result for spreadsheets: a line of attribute names, then one line per object. Fields with a
 * comma, quotation mark or line break are quoted. The column of a single value is named "Value". Without a
 * result, returns an empty string.
 */
std::string FormatCsv(const Result& result, const FormatOptions& options);

/**
 * Formats a result for programs: a list of objects, an object, a value, or null. Numbers, Booleans, lists and
 * references become JSON's own types, everything else a string. An attribute that an object does not have is
 * omitted.
 */
std::string FormatJson(const Result& result, const std::vector<std::string>& columns);

}  // namespace apiclient
