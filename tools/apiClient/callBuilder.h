#pragma once

#include <memory>
#include <string>
#include <vector>

#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethod.h"
#include "tools/apiClient/apiCatalogue.h"

namespace apiclient {

/** A call as given on the command line. */
struct CallRequest {
    std::string object;
    std::string command;
    bool association = false;             ///< the association, even if a command has the same name
    std::vector<std::string> arguments;   ///< "NAME=VALUE", or "NAME.FIELD=VALUE" for structured arguments
    std::vector<std::string> conditions;  ///< of a list's filter
    bool any_condition = false;
    bool lite = false;
    bool checked = true;  ///< false: sent verbatim, even if the catalogue does not know it
};

/** Throws UsageError if the catalogue does not know the object. */
const CatalogueObject& FindObject(const std::string& name);

/** Throws UsageError if the object has no such command or association. */
const CatalogueCommand& FindCommand(const CatalogueObject& object, const std::string& name, bool association);

/** Builds a call, validated if it is checked, whose values are not escaped. Throws UsageError. */
std::unique_ptr<BASEApiMethod> BuildCall(const CallRequest& request);

}  // namespace apiclient
