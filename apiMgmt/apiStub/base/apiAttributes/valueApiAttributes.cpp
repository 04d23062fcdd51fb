#include "apiMgmt/apiStub/base/apiAttributes/valueApiAttributes.h"

#include "apiMgmt/apiStub/base/apiAttributes/filterItem.h"

// ---- DATETIMEApiAttribute ----

bool DATETIMEApiAttribute::MatchesFilter(const FILTERItem& item, const std::string& text) const {
    return HasBothSides(item, text) && IsOrderedAs(item.filterOperator, FromText(text).GetSeconds(),
                                                   FromText(item.PlainValue()).GetSeconds());
}

std::string DATETIMEApiAttribute::ToText(const DATETIMEValue& value) const {
    return value.ToText();
}

DATETIMEValue DATETIMEApiAttribute::FromText(const std::string& text) const {
    return DATETIMEValue::FromText(text);
}

// ---- SIZEApiAttribute ----

bool SIZEApiAttribute::MatchesFilter(const FILTERItem& item, const std::string& text) const {
    return HasBothSides(item, text) &&
           IsOrderedAs(item.filterOperator, FromText(text).count, FromText(item.PlainValue()).count);
}

std::string SIZEApiAttribute::ToText(const SIZEValue& value) const {
    return value.ToText();
}

SIZEValue SIZEApiAttribute::FromText(const std::string& text) const {
    return SIZEValue::FromText(text);
}

// ---- TEMPERATUREApiAttribute ----

bool TEMPERATUREApiAttribute::MatchesFilter(const FILTERItem& item, const std::string& text) const {
    return HasBothSides(item, text) && IsOrderedAs(item.filterOperator, FromText(text).GetCelsius(),
                                                   FromText(item.PlainValue()).GetCelsius());
}

std::string TEMPERATUREApiAttribute::ToText(const TEMPERATUREValue& value) const {
    return value.ToText();
}

TEMPERATUREValue TEMPERATUREApiAttribute::FromText(const std::string& text) const {
    return TEMPERATUREValue::FromText(text);
}

// ---- VERSIONApiAttribute ----

bool VERSIONApiAttribute::MatchesFilter(const FILTERItem& item, const std::string& text) const {
    return HasBothSides(item, text) && IsOrderedAs(item.filterOperator, FromText(text).OrderNumber(),
                                                   FromText(item.PlainValue()).OrderNumber());
}

std::string VERSIONApiAttribute::ToText(const VERSIONValue& value) const {
    return value.ToText();
}

VERSIONValue VERSIONApiAttribute::FromText(const std::string& text) const {
    return VERSIONValue::FromText(text);
}
