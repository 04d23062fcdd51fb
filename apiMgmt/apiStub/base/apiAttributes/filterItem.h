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
