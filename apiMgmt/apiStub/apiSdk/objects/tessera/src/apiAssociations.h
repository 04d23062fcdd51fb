#pragma once

#include <memory>
#include <span>
#include <string_view>

#include "apiMgmt/apiStub/base/apiObjects/base/baseApiAssociation.h"

/** An association that can be looked up by name, because the factories do not contain associations. */
struct ASSOCIATIONEntry {
    std::string_view object;
    std::string_view relation;
    std::unique_ptr<BASEApiAssociation> (*create)();
};

/** Returns all associations: objects in byte order, associations of an object in the order of its data. */
std::span<const ASSOCIATIONEntry> GetAssociations();

/**
 * Returns a new call without arguments, or null if there is no such association. Names are case-sensitive.
 */
std::unique_ptr<BASEApiAssociation> CreateAssociation(std::string_view object, std::string_view relation);
