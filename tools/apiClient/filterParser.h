#pragma once

#include <string>
#include <vector>

#include "apiMgmt/apiStub/base/apiAttributes/filterList.h"
#include "tools/apiClient/apiCatalogue.h"

namespace apiclient {

/** The parts of a condition such as "Status = Down", "Index>=2" or "Name iqs top"; missing parts are empty.
 */
struct Condition {
    std::string attribute;
    std::string comparison;
    std::string value;
};

/** Splits a condition, which may be incomplete. */
Condition SplitCondition(const std::string& text);

/**
 * Returns a filter for objects that meet all conditions, or with match_any at least one. Throws UsageError
 * for a condition that the attributes of the object do not support. checked: if false, only the syntax is
 * checked, and object may be null.
 */
FILTERList ParseFilter(const CatalogueObject* object, const std::vector<std::string>& conditions,
                       bool match_any, bool checked);

/** Returns the operators that can match an attribute of this kind; empty if there are none. */
std::vector<std::string> OperatorsOf(const std::string& kind);

}  // namespace apiclient
