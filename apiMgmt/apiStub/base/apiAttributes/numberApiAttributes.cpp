#include "apiMgmt/apiStub/base/apiAttributes/numberApiAttributes.h"

#include <cmath>

#include "apiMgmt/apiStub/base/apiAttributes/attributeText.h"
#include "apiMgmt/apiStub/base/apiAttributes/filterItem.h"
#include "apiMgmt/common/utils/apiMethodError.h"
#include "apiMgmt/common/utils/stringUtil.h"

namespace {

constexpr char kSourceFile[] = "apiMgmt/apiStub/base/apiAttributes/numberApiAttributes";
constexpr int kParsingError = 4;
constexpr int kOutOfRange = 10760;
constexpr int kBelowLowerBound = 10761;
constexpr int kAboveUpperBound = 10762;

/** Numbers that differ by less count as equal. */
constexpr double kEqualWithin = 0.00005;

std::string MessageText(int64_t value) {
    return std::to_string(value);
}

std::string MessageText(double value) {
    return FormatString("%f", value);
}

/** Throws unless the value is within the bounds. A negative bound means none. */
template <class Number>
void CheckBounds(const std::string& name, Number value, int64_t minValue, int64_t maxValue) {
    const bool is_below = minValue >= 0 && value < static_cast<Number>(minValue);
    const bool is_above = maxValue >= 0 && value > static_cast<Number>(maxValue);
    if (!is_below && !is_above)
        return;
    const std::string text = MessageText(value);
    const long long least = minValue;
    const long long greatest = maxValue;
    if (minValue >= 0 && maxValue >= 0)
        throw APIMethodError(
            FormatString("Attribute \"%s\" was %s, but must be greater than or equal to %lld and "
                         "less than or equal to %lld",
                         name.c_str(), text.c_str(), least, greatest),
            kParsingError, kSourceFile, __LINE__, kOutOfRange, "%s|%lld|%lld", name.c_str(), least, greatest);
    if (is_below)
        throw APIMethodError(
            FormatString("Attribute \"%s\" was %s, but must be greater than or equal to %lld", name.c_str(),
                         text.c_str(), least),
            kParsingError, kSourceFile, __LINE__, kBelowLowerBound, "%s|%lld", name.c_str(), least);
    throw APIMethodError(FormatString("Attribute \"%s\" was %s, but must be less than or equal to %lld",
                                      name.c_str(), text.c_str(), greatest),
                         kParsingError, kSourceFile, __LINE__, kAboveUpperBound, "%s|%lld", name.c_str(),
                         greatest);
}

}  // namespace

// ---- BOOLEANApiAttribute ----

bool BOOLEANApiAttribute::MatchesFilter(const FILTERItem& item, const std::string& text) const {
    return HasBothSides(item, text) && item.filterOperator == filter_operator::kEqual &&
           FromText(text) == FromText(item.value);
}

std::string BOOLEANApiAttribute::ToText(bool value) const {
    return value ? "True" : "False";
}

bool BOOLEANApiAttribute::FromText(const std::string& text) const {
    return text == "1" || CompareNoCase(text, "true") == 0;
}

// ---- INTApiAttribute ----

INTApiAttribute::INTAttributeProperties::INTAttributeProperties(const std::string& name, uint32_t width,
                                                                bool first, int64_t least, int64_t greatest,
                                                                const std::string& text)
    : BASEAttributeProperties(name, width, first, false, text), minValue(least), maxValue(greatest) {}

INTApiAttribute::INTApiAttribute(const std::string& xmlName, uint32_t displayWidth, bool firstFlag,
                                 int64_t minValue, int64_t maxValue, const std::string& label)
    : BASEApiAttribute(std::make_unique<INTAttributeProperties>(xmlName, displayWidth, firstFlag, minValue,
                                                                maxValue, label)) {}

bool INTApiAttribute::Validate(const std::string& text) const {
    const auto& bounds = static_cast<const INTAttributeProperties&>(GetProperties());
    CheckBounds(GetXmlName(), FromText(text), bounds.minValue, bounds.maxValue);
    return true;
}

bool INTApiAttribute::MatchesFilter(const FILTERItem& item, const std::string& text) const {
    return HasBothSides(item, text) &&
           IsOrderedAs(item.filterOperator, FromText(text), FromText(item.PlainValue()));
}

std::string INTApiAttribute::ToText(int64_t value) const {
    return std::to_string(value);
}

int64_t INTApiAttribute::FromText(const std::string& text) const {
    return NumberOfText<int64_t>(text);
}

// ---- DOUBLEApiAttribute ----

DOUBLEApiAttribute::DOUBLEAttributeProperties::DOUBLEAttributeProperties(const std::string& name,
                                                                         uint32_t width, bool first,
                                                                         int64_t least, int64_t greatest,
                                                                         const std::string& text)
    : BASEAttributeProperties(name, width, first, false, text), minValue(least), maxValue(greatest) {}

DOUBLEApiAttribute::DOUBLEApiAttribute(const std::string& xmlName, uint32_t displayWidth, bool firstFlag,
                                       int64_t minValue, int64_t maxValue, const std::string& label)
    : BASEApiAttribute(std::make_unique<DOUBLEAttributeProperties>(xmlName, displayWidth, firstFlag, minValue,
                                                                   maxValue, label)) {}

bool DOUBLEApiAttribute::Validate(const std::string& text) const {
    const auto& bounds = static_cast<const DOUBLEAttributeProperties&>(GetProperties());
    CheckBounds(GetXmlName(), FromText(text), bounds.minValue, bounds.maxValue);
    return true;
}

bool DOUBLEApiAttribute::MatchesFilter(const FILTERItem& item, const std::string& text) const {
    if (!HasBothSides(item, text))
        return false;
    const double value = FromText(text);
    const double filter = FromText(item.PlainValue());
    if (item.filterOperator == filter_operator::kEqual)
        return std::fabs(value - filter) < kEqualWithin;
    return IsOrderedAs(item.filterOperator, value, filter);
}

std::string DOUBLEApiAttribute::ToText(double value) const {
    return TextOfNumber(value);
}

double DOUBLEApiAttribute::FromText(const std::string& text) const {
    return NumberOfText<double>(text);
}

// ---- INTARRAYApiAttribute ----

INTARRAYApiAttribute::INTARRAYAttributeProperties::INTARRAYAttributeProperties(const std::string& name,
                                                                               uint32_t width, bool first,
                                                                               int64_t least,
                                                                               int64_t greatest,
                                                                               const std::string& text)
    : BASEAttributeProperties(name, width, first, false, text), minValue(least), maxValue(greatest) {}

INTARRAYApiAttribute::INTARRAYApiAttribute(const std::string& xmlName, uint32_t displayWidth, bool firstFlag,
                                           int64_t minValue, int64_t maxValue, const std::string& label)
    : BASEApiAttribute(std::make_unique<INTARRAYAttributeProperties>(xmlName, displayWidth, firstFlag,
                                                                     minValue, maxValue, label)) {}

bool INTARRAYApiAttribute::Validate(const std::string& text) const {
    const auto& bounds = static_cast<const INTARRAYAttributeProperties&>(GetProperties());
    for (const int64_t value : FromText(text))
        CheckBounds(GetXmlName(), value, bounds.minValue, bounds.maxValue);
    return true;
}

std::string INTARRAYApiAttribute::ToText(const std::vector<int64_t>& values) const {
    std::vector<std::string> words;
    words.reserve(values.size());
    for (const int64_t value : values)
        words.push_back(std::to_string(value));
    return JoinTexts(words, " ");
}

std::vector<int64_t> INTARRAYApiAttribute::FromText(const std::string& text) const {
    std::vector<int64_t> values;
    for (const std::string& word : WordsOf(text))
        values.push_back(NumberOfText<int64_t>(word));
    return values;
}
