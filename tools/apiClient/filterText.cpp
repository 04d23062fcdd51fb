#include "tools/apiClient/filterText.h"

#include <algorithm>
#include <cctype>

#include "tools/apiClient/attributeWords.h"
#include "tools/apiClient/usageError.h"
#include "tools/apiClient/valueText.h"

namespace {

constexpr char kSymbols[] = "<>=";

bool IsNameLetter(unsigned char c) {
    return std::isalnum(c) || c == '_';
}

std::string CutWhile(std::string& text, bool (*belongs)(unsigned char)) {
    const auto end = std::ranges::find_if_not(text, belongs);
    std::string cut(text.begin(), end);
    text.erase(text.begin(), end);
    TrimLeft(text);
    return cut;
}

bool IsSymbol(unsigned char c) {
    return std::string_view(kSymbols).find(static_cast<char>(c)) != std::string_view::npos;
}

std::string JoinWords(const std::vector<std::string>& words) {
    std::string joined;
    for (const std::string& word : words) {
        joined += (joined.empty() ? "" : ", ") + word;
    }
    return joined;
}

const CatalogueAttribute& FindFilterAttribute(const CatalogueObject& object, const std::string& name) {
    const CatalogueAttribute* attribute = FindNamed(object.attributes, name);
    if (attribute == nullptr) {
        throw UsageError(UnknownWords("attribute of " + object.name, name, object.attributes,
                                      "apiClient " + object.name + " --list has all of them"));
    }
    return *attribute;
}

void CheckOperator(const CatalogueAttribute& attribute, const ConditionParts& parts) {
    const std::vector<std::string> known = OperatorsOf(attribute.kind);
    if (known.empty()) {
        throw UsageError(attribute.name + " is of a kind that no filter compares");
    }
    const auto code = FILTERItem::OperatorOf(parts.filterOperator);
    if (std::ranges::none_of(known,
                             [&](const std::string& each) { return FILTERItem::OperatorOf(each) == code; })) {
        throw UsageError("'" + parts.filterOperator + "' never matches " + attribute.name + "; " +
                         JoinWords(known) + (known.size() == 1 ? " does" : " do"));
    }
}

/** What the attribute itself would hold. The text operators look for pieces. */
std::string FilterValue(const CatalogueAttribute& attribute, const ConditionParts& parts) {
    const int code = FILTERItem::OperatorOf(parts.filterOperator);
    const bool is_piece = code == filter_operator::kIqin || code == filter_operator::kIqs;
    const bool is_address = attribute.kind == "IPV4ADDRESS" || attribute.kind == "IPV6ADDRESS";
    return is_piece || is_address ? parts.value : ValueText(attribute, {parts.value});
}

}  // namespace

ConditionParts SplitCondition(const std::string& text) {
    ConditionParts parts;
    std::string rest = text;
    Trim(rest);
    parts.name = CutWhile(rest, IsNameLetter);
    const bool is_symbol = !rest.empty() && IsSymbol(static_cast<unsigned char>(rest.front()));
    parts.filterOperator = CutWhile(rest, is_symbol ? IsSymbol : IsNameLetter);
    parts.value = rest;
    return parts;
}

FILTERList MakeFilter(const CatalogueObject* object, const std::vector<std::string>& conditions,
                      bool any_of_them, bool checked) {
    FILTERList list;
    list.joinType = any_of_them ? filter_join::kOr : filter_join::kAnd;
    for (const std::string& condition : conditions) {
        ConditionParts parts = SplitCondition(condition);
        if (parts.name.empty() || parts.value.empty() ||
            FILTERItem::OperatorOf(parts.filterOperator) == filter_operator::kNone) {
            throw UsageError("the filter '" + condition +
                             "' is not an attribute, one of = > >= < <= iqin iqs, and a value");
        }
        if (checked) {
            const CatalogueAttribute& attribute = FindFilterAttribute(*object, parts.name);
            CheckOperator(attribute, parts);
            parts.name = attribute.name;
            parts.value = FilterValue(attribute, parts);
        }
        list.Add(parts.name, FILTERItem::OperatorOf(parts.filterOperator), parts.value);
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
