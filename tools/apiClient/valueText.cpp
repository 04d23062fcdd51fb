#include "tools/apiClient/valueText.h"

#include <arpa/inet.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <map>

#include "apiMgmt/apiStub/base/apiAttributes/apiObjectInstance.h"
#include "apiMgmt/apiStub/base/apiAttributes/datetimeValue.h"
#include "apiMgmt/apiStub/base/apiAttributes/filterList.h"
#include "apiMgmt/apiStub/base/apiAttributes/sizeValue.h"
#include "apiMgmt/apiStub/base/apiAttributes/wordList.h"
#include "apiMgmt/common/utils/netUtil.h"
#include "tools/apiClient/attributeWords.h"
#include "tools/apiClient/usageError.h"

namespace {

std::optional<int64_t> ReadWhole(const std::string& text) {
    int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

// The library reads what it can and takes false or 0 for the rest; a person's slip must not become a value.

std::string BooleanText(const CatalogueAttribute& attribute, const std::string& value) {
    for (const char* word : {"true", "yes", "on", "1"}) {
        if (CompareNoCase(value, word) == 0) {
            return "True";
        }
    }
    for (const char* word : {"false", "no", "off", "0"}) {
        if (CompareNoCase(value, word) == 0) {
            return "False";
        }
    }
    RefuseValue(attribute, value);
}

std::string WholeText(const CatalogueAttribute& attribute, const std::string& value) {
    const std::optional<int64_t> number = ReadWhole(value);
    if (!number) {
        RefuseValue(attribute, value);
    }
    return std::to_string(*number);
}

std::string RealText(const CatalogueAttribute& attribute, const std::string& value) {
    if (!IsNumeric(value)) {
        RefuseValue(attribute, value);
    }
    return value;
}

std::string PlainText(const CatalogueAttribute& attribute, const std::string& value) {
    if (std::ranges::any_of(value, [](unsigned char c) { return c < ' ' && c != '\n'; })) {
        throw UsageError(AttributeWords(attribute) +
                         " holds a control character, which no document can carry");
    }
    return value;
}

std::string ReferenceText(const CatalogueAttribute& attribute, const std::string& value) {
    if (!APIObjectInstance::FromText(value)) {
        RefuseValue(attribute, value);
    }
    return PlainText(attribute, value);
}

std::string TimeText(const CatalogueAttribute& attribute, const std::string& value) {
    const DATETIMEValue time = DATETIMEValue::FromText(value);
    if (time.GetSeconds() == 0) {
        RefuseValue(attribute, value);
    }
    return time.ToText();
}

/** Whether the text is a number that is not negative, alone or with a unit that is known. */
bool IsSize(std::string text) {
    Trim(text);
    char* behind = nullptr;
    const double number = std::strtod(text.c_str(), &behind);
    std::string unit = behind;
    Trim(unit);
    return behind != text.c_str() && number >= 0 &&
           (unit.empty() || std::ranges::any_of(SIZEValue::dataSizeTypes, [&](const SIZEValue::Unit& each) {
                return CompareNoCase(unit, each.letter) == 0 || CompareNoCase(unit, each.shortName) == 0;
            }));
}

std::string SizeText(const CatalogueAttribute& attribute, const std::string& value) {
    if (!IsSize(value)) {
        RefuseValue(attribute, value);
    }
    return SIZEValue::FromText(value).ToText();
}

std::string IPv4Text(const CatalogueAttribute& attribute, const std::string& value) {
    in_addr address;
    if (inet_pton(AF_INET, value.c_str(), &address) != 1) {
        RefuseValue(attribute, value);
    }
    return value;
}

std::string IPv6Text(const CatalogueAttribute& attribute, const std::string& value) {
    std::string address;
    int prefix_length = 0;
    if (!ParseIPv6Address(value, address, prefix_length)) {
        RefuseValue(attribute, value);
    }
    return address;
}

std::string FilterText(const CatalogueAttribute& attribute, const std::string& value) {
    const std::unique_ptr<FILTERList> list = FILTERList::FromText(value);
    if (!list || list->items.empty()) {
        RefuseValue(attribute, value);
    }
    return value;
}

std::string EachWord(const CatalogueAttribute& attribute, const std::string& value,
                     std::string (*text)(const CatalogueAttribute&, const std::string&)) {
    std::vector<std::string> words = WordsOf(value);
    for (std::string& word : words) {
        word = text(attribute, word);
    }
    return JoinTexts(words, " ");
}

std::string WholesText(const CatalogueAttribute& attribute, const std::string& value) {
    return EachWord(attribute, value, WholeText);
}

std::string MaskText(const CatalogueAttribute& attribute, const std::string& value) {
    // One text may hold blanks itself.
    const bool is_one = std::ranges::any_of(
        attribute.Rows(), [&](const ENUMRow& row) { return CompareNoCase(UiText(row), value) == 0; });
    return is_one ? EnumerationText(attribute, value) : EachWord(attribute, value, EnumerationText);
}

std::string MarkedText(const CatalogueAttribute& attribute, const std::string& value) {
    return MarkColons(PlainText(attribute, value));
}

std::string MarkedReferenceText(const CatalogueAttribute& attribute, const std::string& value) {
    return MarkColons(ReferenceText(attribute, value));
}

struct KindText {
    std::string (*text)(const CatalogueAttribute&, const std::string&);
    const char* separator = nullptr;  ///< between several values; null where there is one value only
};

const std::map<std::string_view, KindText> kKinds = {
    {"BOOLEAN", {BooleanText}},
    {"INT", {WholeText}},
    {"DOUBLE", {RealText}},
    {"INTARRAY", {WholesText, " "}},
    {"ENUM", {EnumerationText}},
    {"ENUMMASK", {MaskText, " "}},
    {"STRINGARRAY", {MarkedText, ":"}},
    {"OBJECT", {ReferenceText}},
    {"OBJECTARRAY", {MarkedReferenceText, ":"}},
    {"DATETIME", {TimeText}},
    {"SIZE", {SizeText}},
    {"IPV4ADDRESS", {IPv4Text}},
    {"IPV6ADDRESS", {IPv6Text}},
    {"GETLISTFILTER", {FilterText}},
};

KindText FindKind(const std::string& kind) {
    const auto found = kKinds.find(kind);
    return found == kKinds.end() ? KindText{PlainText} : found->second;
}

}  // namespace

std::string ValueText(const CatalogueAttribute& attribute, const std::vector<std::string>& values) {
    const KindText kind = FindKind(attribute.kind);
    if (values.size() > 1 && kind.separator == nullptr) {
        throw UsageError(AttributeWords(attribute) + " is given " + std::to_string(values.size()) +
                         " times and holds one value only");
    }
    std::vector<std::string> texts;
    for (const std::string& value : values) {
        // An empty value takes away what was there, whatever the kind.
        texts.push_back(value.empty() ? "" : kind.text(attribute, value));
    }
    return JoinTexts(texts, kind.separator == nullptr ? "" : kind.separator);
}

std::string EnumerationText(const CatalogueAttribute& attribute, const std::string& value) {
    if (attribute.table.empty()) {
        return PlainText(attribute, value);
    }
    const ENUMTable rows = attribute.Rows();
    if (const ENUMRow* row = rows.FindDescription(value)) {
        return std::string(row->Description);
    }
    const std::optional<int64_t> id = ReadWhole(value);
    for (const ENUMRow& row : rows) {
        if (CompareNoCase(UiText(row), value) == 0 || id == row.Value) {
            return std::string(row.Description);
        }
    }
    RefuseValue(attribute, value);
}

void RefuseValue(const CatalogueAttribute& attribute, const std::string& value) {
    throw UsageError(AttributeWords(attribute) + " was given '" + value + "', but is " +
                     AllowedWords(attribute));
}
