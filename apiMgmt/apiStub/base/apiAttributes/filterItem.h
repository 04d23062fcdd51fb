#pragma once

#include <string>
#include <string_view>

#include "apiMgmt/apiStub/base/apiAttributes/enumRow.h"

/** Operators of a filter item. */
namespace filter_operator {
inline constexpr int kNone = 0;
inline constexpr int kEqual = 2;
inline constexpr int kGreater = 3;
inline constexpr int kGreaterOrEqual = 4;
inline constexpr int kLess = 5;
inline constexpr int kLessOrEqual = 6;
inline constexpr int kIqin = 7;  ///< the attribute's value occurs in the filter's
inline constexpr int kIqs = 8;   ///< the filter's value occurs in the attribute's
}  // namespace filter_operator

/** One condition of a list filter. */
struct FILTERItem {
    std::string name;   ///< XML name of an attribute
    std::string value;  ///< plain, or with "&hy&" for each hyphen
    int filterOperator = filter_operator::kNone;

    /** The operator of a spelling of the filter language, kNone for any other text. */
    static int OperatorOf(std::string_view text);

    /** The item as it stands in a filter text, with the "-" that ends it. Empty without an operator. */
    std::string ToText() const;

    /** The value with a "-" for each "&hy&". */
    std::string PlainValue() const;

    /**
     * Operator spellings of the data layer with ids of their own: they begin at 1 for equality, know a
     * not-equal and agree with filterOperator nowhere. The filter language does not use them.
     */
    static const ENUMRow gTSFilterTypeEnumIdStrList[19];

    /** The id of a spelling, letter case aside; 0 when there is none. */
    static int FilterTypeId(std::string_view name);

    /** The first spelling of an id; empty when there is none. */
    static std::string_view FilterTypeName(int id);
};

// ---- what the attribute classes share in comparing a value with an item ----

/** Whether there is anything to compare. */
inline bool HasBothSides(const FILTERItem& item, const std::string& text) {
    return !item.value.empty() && !text.empty();
}

/** The value at the left, the filter at the right; an operator that orders nothing gives false. */
template <class Value>
bool IsOrderedAs(int filterOperator, const Value& left, const Value& right) {
    switch (filterOperator) {
        case filter_operator::kEqual:
            return left == right;
        case filter_operator::kGreater:
            return left > right;
        case filter_operator::kGreaterOrEqual:
            return left >= right;
        case filter_operator::kLess:
            return left < right;
        case filter_operator::kLessOrEqual:
            return left <= right;
        default:
            return false;
    }
}

/** Whether one text holds the other, letter case aside: for kIqin the filter holds the value, for kIqs the
   value holds the filter. False for any other operator. */
bool IsContainedAs(int filterOperator, const std::string& text, const std::string& filter);
