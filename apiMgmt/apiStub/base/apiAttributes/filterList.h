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
 * A list filter, as the attribute `Filter` holds it: "and TsName = top-Index >= 2-". A hyphen ends an item,
 * so one inside a value is written "&hy&".
 */
struct FILTERList {
    std::vector<FILTERItem> items;
    int joinType = filter_join::kUndecided;

    /** Appends an item; each "-" of its value is stored as "&hy&". */
    void Add(const std::string& name, int filterOperator, const std::string& value);

    /** The list of a filter text, or null when it has no join word. Items that cannot be read are left out.
     */
    static std::unique_ptr<FILTERList> FromText(const std::string& text);

    /** The filter text; empty for an empty list and for one whose join is undecided. */
    std::string ToText() const;
};
