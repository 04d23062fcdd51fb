#pragma once

#include <memory>
#include <string>
#include <vector>

#include "apiMgmt/apiStub/base/apiAttributes/filterItem.h"

/** How the items of a filter are joined. */
namespace filter_join {
inline constexpr int kUndecided = 0;
inline constexpr int kAnd = 1;
inline constexpr int kOr = 2;
}  // namespace filter_join

/**
 * A list filter, as in the attribute `Filter`: "and TsName = top-Index >= 2-". A hyphen ends an item, so a
 * hyphen in a value is written as "&hy&".
 */
struct FILTERList {
    std::vector<FILTERItem> items;
    int joinType = filter_join::kUndecided;

    /** Appends an item. Each "-" in its value is stored as "&hy&". */
    void Add(const std::string& name, int filterOperator, const std::string& value);

    /** Parses a filter. Returns null if it has no join keyword. Skips items that cannot be parsed. */
    static std::unique_ptr<FILTERList> FromText(const std::string& text);

    /** Returns the filter in its syntax; empty without items and if the join is undecided. */
    std::string ToText() const;
};
