#pragma once

#include <memory>
#include <string>
#include <vector>

#include "apiMgmt/apiStub/base/apiObjects/base/baseApiMethod.h"
#include "tools/apiClient/apiCatalogue.h"

/** A call as a person asks for it. */
struct CallRequest {
    std::string object;
    std::string command;
    bool association = false;             ///< the association, also where a command has the same name
    std::vector<std::string> arguments;   ///< "Name=Value", of a structured one "Name.Field=Value"
    std::vector<std::string> conditions;  ///< of a list's filter
    bool anyCondition = false;
    bool lite = false;
    bool checked = true;  ///< false: sent as it stands, also what the catalogue does not know
};

/** Throws UsageError unless the catalogue knows it. */
const CatalogueObject& FindObject(const std::string& name);
const CatalogueCommand& FindCommand(const CatalogueObject& object, const std::string& name, bool association);

/** The call, ready to be sent: validated unless the request forgoes it, values escaped. Throws UsageError. */
std::unique_ptr<BASEApiMethod> BuildCall(const CallRequest& request);
