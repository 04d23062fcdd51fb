#pragma once

#include <string>
#include <vector>

#include "tools/apiClient/apiCatalogue.h"

namespace apiclient {

/**
 * Converts values from the command line to an attribute's string, not yet escaped. Enumerations accept
 * identifiers, readable names and IDs. values: one, or several if the kind holds several. Throws UsageError
 * for values that can only be mistakes; limits and lengths are left to the library. Not for structured
 * arguments.
 */
std::string ParseValue(const CatalogueAttribute& attribute, const std::vector<std::string>& values);

}  // namespace apiclient
