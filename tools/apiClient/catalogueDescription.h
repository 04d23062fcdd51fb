#pragma once

#include <string>

#include "tools/apiClient/apiCatalogue.h"

namespace apiclient {

// Human-readable descriptions of the catalogue, for --list and for error messages.

/** Describes the legal values of an attribute, for example "a string of 1 to 64 bytes without < > &". */
std::string DescribeLegalValues(const CatalogueAttribute& attribute);

/** Returns the name, with the label if that says more: "Name", "BmcGateway (BMC Gateway IPv4 Address)". */
std::string DescribeAttribute(const CatalogueAttribute& attribute);

/** Lists all objects, one per line. */
std::string ListObjects();

/** Lists the commands, associations and attributes of an object. */
std::string ListObject(const CatalogueObject& object);

/** Lists the arguments of a call, with the fields of structured ones. */
std::string ListCommand(const CatalogueObject& object, const CatalogueCommand& command);

/** Lists the rows of an enumeration. Throws UsageError if there is no such enumeration. */
std::string ListEnumeration(const std::string& name);

}  // namespace apiclient
