#pragma once

#include <memory>
#include <span>
#include <string_view>

#include "apiMgmt/apiStub/base/apiObjects/base/baseApiAssociation.h"

/** A relation of an object, for those who know it by its name only: the factories hold no associations. */
struct ASSOCIATIONEntry {
    std::string_view object;
    std::string_view relation;
    std::unique_ptr<BASEApiAssociation> (*create)();
};

/** All of them: objects in byte order, the relations of one in the order of its data. */
std::span<const ASSOCIATIONEntry> GetAssociations();

/** A new call without arguments; null when there is no such relation. Names compare exactly. */
std::unique_ptr<BASEApiAssociation> CreateAssociation(std::string_view object, std::string_view relation);
