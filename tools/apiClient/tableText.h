#pragma once

#include <string>
#include <vector>

#include "tools/apiClient/records.h"

/** How a table is made. */
struct TableOptions {
    std::vector<std::string> columns;  ///< empty: what identifies the objects, and what fits beside it
    bool readable = false;  ///< sizes with units and texts of enumerations, in place of the API's words
    size_t width = 120;     ///< of a line, in characters, when the columns are not chosen
};

/**
 * A result for people: a list as a table with the labels and at least the widths of its attributes, one
 * object as a line an attribute. Nothing is cut: a longer value widens its column. Throws UsageError for an
 * unknown column.
 */
std::string TableText(const Result& result, const TableOptions& options);

/** Rows of cells with two blanks between them, the columns at least as wide as given. */
std::string AlignedText(const std::vector<std::vector<std::string>>& rows, std::vector<size_t> widths);
