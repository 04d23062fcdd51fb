#include "tools/apiClient/valueText.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <chrono>
#include <ctime>
#include <iterator>
#include <limits>
#include <map>
#include <utility>

#include "apiMgmt/apiStub/base/apiAttributes/apiObjectInstance.h"
#include "apiMgmt/apiStub/base/apiAttributes/attributeText.h"
#include "apiMgmt/apiStub/base/apiAttributes/filterList.h"
#include "apiMgmt/apiStub/base/apiAttributes/sizeValue.h"
#include "apiMgmt/apiStub/base/apiAttributes/temperatureValue.h"
#include "apiMgmt/common/utils/netUtil.h"
#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/common/utils/wholeNumber.h"
#include "tools/apiClient/attributeWords.h"
#include "tools/apiClient/usageError.h"

namespace {

/** A number at the start of a text and what stands behind it. */
struct RealPrefix {
    double number;
    std::string rest;
};

std::optional<RealPrefix> ReadReal(std::string text) {
    Trim(text);
    if (text.starts_with('+') && !text.starts_with("+-")) {
        text.erase(0, 1);
    }
    const char* end = nullptr;
    const std::optional<double> number = ParseDecimal(text, &end);
    if (!number) {
        return std::nullopt;
    }
    std::string rest = text.substr(static_cast<size_t>(end - text.c_str()));
    Trim(rest);
    return RealPrefix{*number, rest};
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
    const std::optional<int64_t> number = ParseWhole<int64_t>(value);
    if (!number) {
        RefuseValue(attribute, value);
    }
    return std::to_string(*number);
}

std::string RealText(const CatalogueAttribute& attribute, const std::string& value) {
    const std::optional<RealPrefix> real = ReadReal(value);
    if (!real || !real->rest.empty()) {
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

/** The fields of a time, if the whole text has that form of strptime. */
std::optional<std::tm> ReadTimeFields(const std::string& text, const char* format) {
    std::tm fields{};
    const char* end = strptime(text.c_str(), format, &fields);
    return end == text.c_str() + text.size() ? std::optional(fields) : std::nullopt;
}

/** Whether there is such a time. No zone is asked: the array's counts, and this machine may have another. */
bool IsTime(const std::tm& fields) {
    using namespace std::chrono;
    constexpr int kFirstYear = 1900;  // of tm_year
    constexpr int kLastSecond = 59;   // strptime knows leap seconds
    const year_month_day date(year(fields.tm_year + kFirstYear),
                              month(static_cast<unsigned>(fields.tm_mon + 1)),
                              day(static_cast<unsigned>(fields.tm_mday)));
    // In some zone the first day of the epoch is 0 or before it, which says that there is no date.
    return date.ok() && sys_days(date) > sys_days{} && fields.tm_sec <= kLastSecond;
}

constexpr char kTimeForm[] = "%m/%d/%Y %I:%M:%S %p";
constexpr char kTimeFormOf24Hours[] = "%m/%d/%Y-%H:%M:%S";

std::string TimeText(const CatalogueAttribute& attribute, const std::string& value) {
    std::string text = value;
    Trim(text);
    std::optional<std::tm> fields = ReadTimeFields(text, kTimeForm);
    if (!fields) {
        fields = ReadTimeFields(text, kTimeFormOf24Hours);
    }
    if (!fields || !IsTime(*fields)) {
        RefuseValue(attribute, value);
    }
    std::array<char, 64> written{};
    return {written.data(), strftime(written.data(), written.size(), kTimeForm, &*fields)};
}

/** Whether the text is a number from 0 that fits, alone or with a unit that is known. */
bool IsSize(const std::string& text) {
    constexpr auto kTooGreat = static_cast<double>(std::numeric_limits<uint64_t>::max());
    const std::optional<RealPrefix> real = ReadReal(text);
    if (!real || real->number < 0) {
        return false;
    }
    if (real->rest.empty()) {
        return real->number < kTooGreat;
    }
    const auto* unit = std::ranges::find_if(SIZEValue::dataSizeTypes, [&](const SIZEValue::Unit& each) {
        return CompareNoCase(real->rest, each.letter) == 0 || CompareNoCase(real->rest, each.shortName) == 0;
    });
    return unit != std::end(SIZEValue::dataSizeTypes) &&
           real->number * static_cast<double>(unit->divisor) < kTooGreat;
}

std::string SizeText(const CatalogueAttribute& attribute, const std::string& value) {
    if (!IsSize(value)) {
        RefuseValue(attribute, value);
    }
    return SIZEValue::FromText(value).ToText();
}

/** Whether the library reads all of a text as a temperature: whole degrees, and a unit that stands apart. */
bool IsDegrees(std::string text) {
    Trim(text);
    const size_t blank = text.find(' ');
    const std::optional<int64_t> number = ParseWhole<int64_t>(text.substr(0, blank));
    std::string unit = blank == std::string::npos ? "" : text.substr(blank);
    Trim(unit);
    return number && std::in_range<int32_t>(*number) &&
           (unit.empty() || CompareNoCase(unit, "C") == 0 || CompareNoCase(unit, "F") == 0);
}

/** Whether both halves, as in "45 C/113 F", say the same, which the library demands. */
bool HalvesAgree(const std::string& first, std::string second) {
    Trim(second);
    const TEMPERATUREValue temperature = TEMPERATUREValue::FromText(first);
    return TEMPERATUREValue::FromText(second).GetCelsius() == temperature.GetCelsius() ||
           second == std::to_string(temperature.GetFahrenheit()) + " F";
}

std::string TemperatureText(const CatalogueAttribute& attribute, const std::string& value) {
    std::vector<std::string> halves;
    Split(value, "/", halves);
    if (halves.size() > 2 || !std::ranges::all_of(halves, IsDegrees) ||
        (halves.size() == 2 && !HalvesAgree(halves[0], halves[1]))) {
        RefuseValue(attribute, value);
    }
    return value;
}

// One letter may stand before the numbers, as in "R06.03"; of more the library would take no notice either,
// but they are no version.
bool IsVersion(std::string text) {
    constexpr int64_t kGreatest[] = {99, 99, 999, 9999, 99};
    Trim(text);
    if (!text.empty() && std::isalpha(static_cast<unsigned char>(text[0]))) {
        text.erase(0, 1);
    }
    std::vector<std::string> fields;
    Split(text, ".", fields);
    if (fields.empty() || fields.size() > std::size(kGreatest)) {
        return false;
    }
    for (size_t i = 0; i < fields.size(); ++i) {
        const std::optional<int64_t> number = ParseWhole<int64_t>(fields[i]);
        if (!number || fields[i][0] == '-' || *number > kGreatest[i]) {
            return false;
        }
    }
    return true;
}

std::string VersionText(const CatalogueAttribute& attribute, const std::string& value) {
    if (!IsVersion(value)) {
        RefuseValue(attribute, value);
    }
    return value;
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
    {"TEMPERATURE", {TemperatureText}},
    {"VERSION", {VersionText}},
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
    const std::optional<int64_t> id = ParseWhole<int64_t>(value);
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
