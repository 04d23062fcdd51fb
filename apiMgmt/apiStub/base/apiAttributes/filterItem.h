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

    /** Returns the operator with this spelling; kNone for any other string. */
    static int OperatorOf(std::string_view text);

    /** Returns the item in filter syntax, including the "-" that ends it; empty without an operator. */
    std::string ToText() const;

    /** Returns the value with each "&hy&" replaced by "-". */
    std::string PlainValue() const;

    /**
     * Operator spellings of the data layer with their own IDs: these begin at 1 for equality, include
     * not-equal and never agree with filterOperator. The filter language does not use them.
     */
    static const ENUMRow gTSFilterTypeEnumIdStrList[19];

    /** Returns the ID of a spelling (case-insensitive); 0 if there is none. */
    static int FilterTypeId(std::string_view name);

    /** Returns the first spelling of an ID; empty if there is none. */
    static std::string_view FilterTypeName(int id);
};

// ---- comparison of a value with an item, for the attribute classes ----

/** Returns whether both strings are non-empty. */
inline bool HasBothSides(const FILTERItem& item, const std::string& text) {
    return !item.value.empty() && !text.empty();
}

/**
 * Compares the value (left) with the filter (right). Returns false for an operator that is not a comparison.
 */
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

/**
 * Returns whether one string contains the other (case-insensitive): for kIqin, whether the filter contains
 * the value; for kIqs, whether the value contains the filter. Returns false for any other operator.
 */
bool IsContainedAs(int filterOperator, const std::string& text, const std::string& filter);
