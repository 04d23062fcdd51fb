#pragma once

#include <string>
#include <vector>

#include "apiMgmt/apiStub/base/apiAttributes/filterList.h"
#include "tools/apiClient/apiCatalogue.h"

/** The parts of a condition as a person writes it: "Status = Down", "Index>=2", "Name iqs top". */
struct ConditionParts {
    std::string name;
    std::string filterOperator;
    std::string value;
};

/** Parts that are missing are empty. */
ConditionParts SplitCondition(const std::string& text);

/**
 * The filter that all conditions make, joined by and, or with any_of_them by or. Throws UsageError for a
 * condition that the object's attributes do not bear. checked: false lets pass what only the catalogue can
 * tell.
 */
FILTERList MakeFilter(const CatalogueObject* object, const std::vector<std::string>& conditions,
                      bool any_of_them, bool checked);

/** The operators that can match an attribute of this kind, in the order of their codes; empty when none can.
 */
std::vector<std::string> OperatorsOf(const std::string& kind);
