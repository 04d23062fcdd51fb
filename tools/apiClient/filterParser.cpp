#include "tools/apiClient/filterParser.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "apiMgmt/apiStub/base/apiAttributes/attributeText.h"
#include "tools/apiClient/valueParser.h"
#include "tools/commandLine/nearestName.h"
#include "tools/commandLine/usageError.h"

namespace apiclient {

using commandline::UsageError;

namespace {

bool IsNameCharacter(unsigned char c) {
    return std::isalnum(c) || c == '_';
}

bool IsSymbol(unsigned char c) {
    return std::string_view("<>=").find(static_cast<char>(c)) != std::string_view::npos;
}

/** Removes leading characters for which `belongs` is true and returns them. Removes whitespace after them. */
std::string TakeWhile(std::string& text, bool (*belongs)(unsigned char)) {
    const auto end = std::ranges::find_if_not(text, belongs);
    std::string taken(text.begin(), end);
    text.erase(text.begin(), end);
    TrimLeft(text);
    return taken;
}

const CatalogueAttribute& FindAttribute(const CatalogueObject& object, const std::string& name) {
    const CatalogueAttribute* attribute = FindNamed(object.attributes, name);
    if (attribute == nullptr) {
        throw UsageError(commandline::UnknownName("attribute of " + object.name, name,
                                                  NamesOf(object.attributes),
                                                  "see apiClient " + object.name + " --list"));
    }
    return *attribute;
}

void CheckOperator(const CatalogueAttribute& attribute, const std::string& comparison) {
    const std::vector<std::string> supported = OperatorsOf(attribute.kind);
    if (supported.empty()) {
        throw UsageError("filters do not support attribute " + attribute.name + " (" + attribute.kind + ")");
    }
    const auto code = FILTERItem::OperatorOf(comparison);
    if (std::ranges::none_of(supported,
                             [&](const std::string& each) { return FILTERItem::OperatorOf(each) == code; })) {
        throw UsageError("operator '" + comparison + "' never matches attribute " + attribute.name +
                         "; supported are " + JoinTexts(supported, " "));
    }
}

/** The value in the attribute's own form; iqs and iqin compare parts of it and addresses are compared as
 * strings. */
std::string FilterValue(const CatalogueAttribute& attribute, const Condition& condition) {
    const int code = FILTERItem::OperatorOf(condition.comparison);
    const bool is_part = code == filter_operator::kIqin || code == filter_operator::kIqs;
    const bool is_address = attribute.kind == "IPV4ADDRESS" || attribute.kind == "IPV6ADDRESS";
    return is_part || is_address ? condition.value : ParseValue(attribute, {condition.value});
}

}  // namespace

Condition SplitCondition(const std::string& text) {
    Condition condition;
    std::string rest = text;
    Trim(rest);
    condition.attribute = TakeWhile(rest, IsNameCharacter);
    const bool has_symbol = !rest.empty() && IsSymbol(static_cast<unsigned char>(rest.front()));
    condition.comparison = TakeWhile(rest, has_symbol ? IsSymbol : IsNameCharacter);
    condition.value = rest;
    return condition;
}

FILTERList ParseFilter(const CatalogueObject* object, const std::vector<std::string>& conditions,
                       bool match_any, bool checked) {
    FILTERList list;
    list.joinType = match_any ? filter_join::kOr : filter_join::kAnd;
    for (const std::string& text : conditions) {
        Condition condition = SplitCondition(text);
        if (condition.attribute.empty() || condition.value.empty() ||
            FILTERItem::OperatorOf(condition.comparison) == filter_operator::kNone) {
            throw UsageError("invalid filter '" + text +
                             "'; expected ATTRIBUTE OPERATOR VALUE with one of = > >= < <= iqin iqs");
        }
        if (checked) {
            const CatalogueAttribute& attribute = FindAttribute(*object, condition.attribute);
            CheckOperator(attribute, condition.comparison);
            condition.attribute = attribute.name;
            condition.value = FilterValue(attribute, condition);
        }
        list.Add(condition.attribute, FILTERItem::OperatorOf(condition.comparison), condition.value);
    }
    return list;
}

std::vector<std::string> OperatorsOf(const std::string& kind) {
    if (kind == "STRING" || kind == "NAME") {
        return {"=", ">", ">=", "<", "<=", "iqin", "iqs"};
    }
    for (const char* ordered : {"INT", "DOUBLE", "DATETIME", "SIZE", "TEMPERATURE", "VERSION"}) {
        if (kind == ordered) {
            return {"=", ">", ">=", "<", "<="};
        }
    }
    if (kind == "IPV4ADDRESS" || kind == "IPV6ADDRESS") {
        return {"=", "iqin", "iqs"};
    }
    return kind == "BOOLEAN" || kind == "ENUM" || kind == "INSTANCEID" ? std::vector<std::string>{"="}
                                                                       : std::vector<std::string>{};
}

}  // namespace apiclient
