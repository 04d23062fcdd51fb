#pragma once

#include <string>
#include <vector>

#include "tools/apiClient/apiCatalogue.h"

/**
 * The text that a call carries for what a person gave, without escapes. Enumerations take identifiers, texts
 * and ids alike. Throws UsageError for what can only be a mistake, bounds and lengths aside: those the
 * library examines. values: one, or several for a kind that holds several; of any kind without fields.
 */
std::string ValueText(const CatalogueAttribute& attribute, const std::vector<std::string>& values);

/** The identifier for an identifier, a text or an id of an enumeration; any word for one without a table.
   Throws UsageError for any other. */
std::string EnumerationText(const CatalogueAttribute& attribute, const std::string& value);

/** Throws the UsageError that says what was given and what is allowed. */
[[noreturn]] void RefuseValue(const CatalogueAttribute& attribute, const std::string& value);
