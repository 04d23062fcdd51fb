#include "apiMgmt/apiStub/base/apiAttributes/filterItem.h"

#include "apiMgmt/common/utils/stringUtil.h"

namespace {

struct Spelling {
    std::string_view text;
    int filterOperator;
};

// The first spelling of each operator is used for output.
constexpr Spelling kSpellings[] = {
    {"=", filter_operator::kEqual},
    {"eq", filter_operator::kEqual},
    {">", filter_operator::kGreater},
    {"gt", filter_operator::kGreater},
    {">=", filter_operator::kGreaterOrEqual},
    {"gteq", filter_operator::kGreaterOrEqual},
    {"<", filter_operator::kLess},
    {"lt", filter_operator::kLess},
    {"<=", filter_operator::kLessOrEqual},
    {"lteq", filter_operator::kLessOrEqual},
    {"iqin", filter_operator::kIqin},
    {"iqs", filter_operator::kIqs},
};

std::string_view SpellingOf(int filterOperator) {
    for (const Spelling& spelling : kSpellings) {
        if (spelling.filterOperator == filterOperator) {
            return spelling.text;
        }
    }
    return {};
}

}  // namespace

constinit const ENUMRow FILTERItem::gTSFilterTypeEnumIdStrList[19] = {
    {0, "None", "None"},
    {1, "=", "eq"},
    {1, "eq", "eq"},
    {2, "!=", "ne"},
    {2, "ne", "ne"},
    {3, ">", "gt"},
    {3, "gt", "gt"},
    {4, ">=", "ge"},
    {4, "ge", "ge"},
    {5, "<", "lt"},
    {5, "lt", "lt"},
    {6, "<=", "le"},
    {6, "le", "le"},
    {7, "&", "=~"},
    {7, "=~", "=~"},
    {7, "RegexMatch", "=~"},
    {8, "!&", "!=~"},
    {8, "!=~", "!=~"},
    {8, "RegexNotMatch", "!=~"},
};

int FILTERItem::OperatorOf(std::string_view text) {
    for (const Spelling& spelling : kSpellings) {
        if (spelling.text == text) {
            return spelling.filterOperator;
        }
    }
    return filter_operator::kNone;
}

std::string FILTERItem::ToText() const {
    const std::string_view spelling = SpellingOf(filterOperator);
    if (spelling.empty()) {
        return {};
    }
    std::string escaped = value;
    ReplaceAll(escaped, "-", "&hy&");
    return name + " " + std::string(spelling) + " " + escaped + "-";
}

std::string FILTERItem::PlainValue() const {
    std::string plain = value;
    ReplaceAll(plain, "&hy&", "-");
    return plain;
}

int FILTERItem::FilterTypeId(std::string_view name) {
    const ENUMRow* row = ENUMTable(gTSFilterTypeEnumIdStrList).FindDescription(name);
    return row == nullptr ? 0 : row->Value;
}

std::string_view FILTERItem::FilterTypeName(int id) {
    return ENUMTable(gTSFilterTypeEnumIdStrList).DescriptionOf(id);
}

bool IsContainedAs(int filterOperator, const std::string& text, const std::string& filter) {
    switch (filterOperator) {
        case filter_operator::kIqin:
            return ToLower(filter).find(ToLower(text)) != std::string::npos;
        case filter_operator::kIqs:
            return ToLower(text).find(ToLower(filter)) != std::string::npos;
        default:
            return false;
    }
}
