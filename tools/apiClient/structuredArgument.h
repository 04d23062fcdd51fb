#pragma once

#include <string>
#include <vector>

#include "tools/apiClient/apiCatalogue.h"
#include "tools/apiClient/givenArguments.h"

/** The elements of a structured argument, or of a list of them, with their values escaped. Throws UsageError.
 */
std::string StructuredText(const CatalogueAttribute& attribute, const std::vector<GivenValue>& given);
