#pragma once

#include <string>

#include "apiMgmt/apiStub/base/apiAttributes/filterItem.h"

/** What the attribute classes share in comparing a value with a filter's item. */

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
