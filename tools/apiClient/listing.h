#pragma once

#include <string>

#include "tools/apiClient/apiCatalogue.h"

/** What can be asked, for people. */

/** All objects, a line each. */
std::string ObjectsListing();

/** The commands, associations and attributes of an object. */
std::string ObjectListing(const CatalogueObject& object);

/** The arguments of a call, and the fields of those that are structured. */
std::string CommandListing(const CatalogueObject& object, const CatalogueCommand& command);

/** The rows of an enumeration. Throws UsageError for an unknown one. */
std::string EnumerationListing(const std::string& name);
