#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tools/apiClient/apiCatalogue.h"

namespace apiclient {

/** One NAME=VALUE or NAME.FIELD=VALUE without the name. */
struct GivenValue {
    std::string
        field;  ///< of a structured argument: "UseCurrent", or in a list "1.IpAddress"; otherwise empty
    std::string value;
};

/** The values of each argument, in the order of the command line. */
using GivenArguments = std::vector<std::pair<std::string, std::vector<GivenValue>>>;

/** Parses words of the form NAME=VALUE or NAME.FIELD=VALUE. Throws UsageError for any other. */
GivenArguments ParseArguments(const std::vector<std::string>& words);

/** Returns whether a document can contain an element of that name. */
bool IsElementName(std::string_view name);

/** Returns the XML elements of a structured argument or of a list of them, with escaped values. Throws
 * UsageError. */
std::string BuildStructure(const CatalogueAttribute& attribute, const std::vector<GivenValue>& given);

}  // namespace apiclient
