#include "tools/apiClient/valueParser.h"

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
#include "tools/apiClient/catalogueDescription.h"
#include "tools/commandLine/usageError.h"

namespace apiclient {

using commandline::UsageError;

namespace {

[[noreturn]] void RejectValue(const CatalogueAttribute& attribute, const std::string& value) {
    throw UsageError("invalid value '" + value + "' for " + DescribeAttribute(attribute) + "; expected " +
                     DescribeLegalValues(attribute));
}

/** A number at the start of a string, and the rest of the string. */
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

// The library reads what it can and replaces the rest by false or 0. Here, a typing error must not become a
// value.

std::string ParseBoolean(const CatalogueAttribute& attribute, const std::string& value) {
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
    RejectValue(attribute, value);
}

std::string ParseInteger(const CatalogueAttribute& attribute, const std::string& value) {
    const std::optional<int64_t> number = ParseWhole<int64_t>(value);
    if (!number) {
        RejectValue(attribute, value);
    }
    return std::to_string(*number);
}

std::string ParseReal(const CatalogueAttribute& attribute, const std::string& value) {
    const std::optional<RealPrefix> real = ReadReal(value);
    if (!real || !real->rest.empty()) {
        RejectValue(attribute, value);
    }
    return value;
}

std::string ParseString(const CatalogueAttribute& attribute, const std::string& value) {
    if (std::ranges::any_of(value, [](unsigned char c) { return c < ' ' && c != '\n'; })) {
        throw UsageError(DescribeAttribute(attribute) +
                         " contains a control character, which a document cannot contain");
    }
    return value;
}

std::string ParseReference(const CatalogueAttribute& attribute, const std::string& value) {
    if (!APIObjectInstance::FromText(value)) {
        RejectValue(attribute, value);
    }
    return ParseString(attribute, value);
}

/** Parses a time if the whole string has that format of strptime. */
std::optional<std::tm> ReadTimeFields(const std::string& text, const char* format) {
    std::tm fields{};
    const char* end = strptime(text.c_str(), format, &fields);
    return end == text.c_str() + text.size() ? std::optional(fields) : std::nullopt;
}

/** Returns whether the time exists, in the array's time zone: that of this machine does not matter. */
bool IsTime(const std::tm& fields) {
    using namespace std::chrono;
    constexpr int kFirstYear = 1900;  // of tm_year
    constexpr int kLastSecond = 59;   // strptime accepts leap seconds
    const year_month_day date(year(fields.tm_year + kFirstYear),
                              month(static_cast<unsigned>(fields.tm_mon + 1)),
                              day(static_cast<unsigned>(fields.tm_mday)));
    // In some time zones the first day of the epoch is 0 or negative, which means that there is no date.
    return date.ok() && sys_days(date) > sys_days{} && fields.tm_sec <= kLastSecond;
}

constexpr char kTimeFormat[] = "%m/%d/%Y %I:%M:%S %p";
constexpr char kTimeFormat24Hours[] = "%m/%d/%Y-%H:%M:%S";

std::string ParseTime(const CatalogueAttribute& attribute, const std::string& value) {
    std::string text = value;
    Trim(text);
    std::optional<std::tm> fields = ReadTimeFields(text, kTimeFormat);
    if (!fields) {
        fields = ReadTimeFields(text, kTimeFormat24Hours);
    }
    if (!fields || !IsTime(*fields)) {
        RejectValue(attribute, value);
    }
    std::array<char, 64> written{};
    return {written.data(), strftime(written.data(), written.size(), kTimeFormat, &*fields)};
}

/** Returns whether the string is a number of at least 0 that fits, with or without a known unit. */
bool IsSize(const std::string& text) {
    constexpr auto kLimit = static_cast<double>(std::numeric_limits<uint64_t>::max());
    const std::optional<RealPrefix> real = ReadReal(text);
    if (!real || real->number < 0) {
        return false;
    }
    if (real->rest.empty()) {
        return real->number < kLimit;
    }
    const auto* unit = std::ranges::find_if(SIZEValue::dataSizeTypes, [&](const SIZEValue::Unit& each) {
        return CompareNoCase(real->rest, each.letter) == 0 || CompareNoCase(real->rest, each.shortName) == 0;
    });
    return unit != std::end(SIZEValue::dataSizeTypes) &&
           real->number * static_cast<double>(unit->divisor) < kLimit;
}

std::string ParseSize(const CatalogueAttribute& attribute, const std::string& value) {
    if (!IsSize(value)) {
        RejectValue(attribute, value);
    }
    return SIZEValue::FromText(value).ToText();
}

/** Returns whether the library reads the whole string as a temperature: whole degrees, then a space and a
 * unit. */
bool IsDegrees(std::string text) {
    Trim(text);
    const size_t space = text.find(' ');
    const std::optional<int64_t> number = ParseWhole<int64_t>(text.substr(0, space));
    std::string unit = space == std::string::npos ? "" : text.substr(space);
    Trim(unit);
    return number && std::in_range<int32_t>(*number) &&
           (unit.empty() || CompareNoCase(unit, "C") == 0 || CompareNoCase(unit, "F") == 0);
}

/** Returns whether both halves, as in "45 C/113 F", are equal, as the library requires. */
bool HalvesAgree(const std::string& first, std::string second) {
    Trim(second);
    const TEMPERATUREValue temperature = TEMPERATUREValue::FromText(first);
    return TEMPERATUREValue::FromText(second).GetCelsius() == temperature.GetCelsius() ||
           second == std::to_string(temperature.GetFahrenheit()) + " F";
}

std::string ParseTemperature(const CatalogueAttribute& attribute, const std::string& value) {
    std::vector<std::string> halves;
    Split(value, "/", halves);
    if (halves.size() > 2 || !std::ranges::all_of(halves, IsDegrees) ||
        (halves.size() == 2 && !HalvesAgree(halves[0], halves[1]))) {
        RejectValue(attribute, value);
    }
    return value;
}

// The library ignores everything before the first digit. Here, only one letter is allowed, as in "R06.03".
bool IsVersion(std::string text) {
    constexpr int64_t kMaximum[] = {99, 99, 999, 9999, 99};
    Trim(text);
    if (!text.empty() && std::isalpha(static_cast<unsigned char>(text[0]))) {
        text.erase(0, 1);
    }
    std::vector<std::string> fields;
    Split(text, ".", fields);
    if (fields.empty() || fields.size() > std::size(kMaximum)) {
        return false;
    }
    for (size_t i = 0; i < fields.size(); ++i) {
        const std::optional<int64_t> number = ParseWhole<int64_t>(fields[i]);
        if (!number || fields[i][0] == '-' || *number > kMaximum[i]) {
            return false;
        }
    }
    return true;
}

std::string ParseVersion(const CatalogueAttribute& attribute, const std::string& value) {
    if (!IsVersion(value)) {
        RejectValue(attribute, value);
    }
    return value;
}

std::string ParseIPv4(const CatalogueAttribute& attribute, const std::string& value) {
    in_addr address;
    if (inet_pton(AF_INET, value.c_str(), &address) != 1) {
        RejectValue(attribute, value);
    }
    return value;
}

std::string ParseIPv6(const CatalogueAttribute& attribute, const std::string& value) {
    std::string address;
    int prefix_length = 0;
    if (!ParseIPv6Address(value, address, prefix_length)) {
        RejectValue(attribute, value);
    }
    return address;
}

std::string ParseListFilter(const CatalogueAttribute& attribute, const std::string& value) {
    const std::unique_ptr<FILTERList> list = FILTERList::FromText(value);
    if (!list || list->items.empty()) {
        RejectValue(attribute, value);
    }
    return value;
}

std::string ParseEnumeration(const CatalogueAttribute& attribute, const std::string& value) {
    if (attribute.table.empty()) {
        return ParseString(attribute, value);
    }
    const ENUMTable rows = attribute.Rows();
    if (const ENUMRow* row = rows.FindDescription(value)) {
        return std::string(row->Description);
    }
    const std::optional<int64_t> id = ParseWhole<int64_t>(value);
    for (const ENUMRow& row : rows) {
        if (CompareNoCase(ReadableName(row), value) == 0 || id == row.Value) {
            return std::string(row.Description);
        }
    }
    RejectValue(attribute, value);
}

std::string ParseEach(const CatalogueAttribute& attribute, const std::string& value,
                      std::string (*parse)(const CatalogueAttribute&, const std::string&)) {
    std::vector<std::string> words = WordsOf(value);
    for (std::string& word : words) {
        word = parse(attribute, word);
    }
    return JoinTexts(words, " ");
}

std::string ParseIntegers(const CatalogueAttribute& attribute, const std::string& value) {
    return ParseEach(attribute, value, ParseInteger);
}

std::string ParseMask(const CatalogueAttribute& attribute, const std::string& value) {
    // A readable name may contain spaces.
    const bool is_single = std::ranges::any_of(
        attribute.Rows(), [&](const ENUMRow& row) { return CompareNoCase(ReadableName(row), value) == 0; });
    return is_single ? ParseEnumeration(attribute, value) : ParseEach(attribute, value, ParseEnumeration);
}

std::string ParseMarkedString(const CatalogueAttribute& attribute, const std::string& value) {
    return MarkColons(ParseString(attribute, value));
}

std::string ParseMarkedReference(const CatalogueAttribute& attribute, const std::string& value) {
    return MarkColons(ParseReference(attribute, value));
}

struct KindParser {
    std::string (*parse)(const CatalogueAttribute&, const std::string&);
    const char* separator = nullptr;  ///< between several values; null if there can be only one
};

const std::map<std::string_view, KindParser> kKinds = {
    {"BOOLEAN", {ParseBoolean}},
    {"INT", {ParseInteger}},
    {"DOUBLE", {ParseReal}},
    {"INTARRAY", {ParseIntegers, " "}},
    {"ENUM", {ParseEnumeration}},
    {"ENUMMASK", {ParseMask, " "}},
    {"STRINGARRAY", {ParseMarkedString, ":"}},
    {"OBJECT", {ParseReference}},
    {"OBJECTARRAY", {ParseMarkedReference, ":"}},
    {"DATETIME", {ParseTime}},
    {"SIZE", {ParseSize}},
    {"TEMPERATURE", {ParseTemperature}},
    {"VERSION", {ParseVersion}},
    {"IPV4ADDRESS", {ParseIPv4}},
    {"IPV6ADDRESS", {ParseIPv6}},
    {"GETLISTFILTER", {ParseListFilter}},
};

KindParser FindParser(const std::string& kind) {
    const auto found = kKinds.find(kind);
    return found == kKinds.end() ? KindParser{ParseString} : found->second;
}

}  // namespace

std::string ParseValue(const CatalogueAttribute& attribute, const std::vector<std::string>& values) {
    const KindParser parser = FindParser(attribute.kind);
    if (values.size() > 1 && parser.separator == nullptr) {
        throw UsageError(DescribeAttribute(attribute) + " is given " + std::to_string(values.size()) +
                         " times; it holds only one value");
    }
    std::vector<std::string> texts;
    for (const std::string& value : values) {
        // An empty value of any kind removes the previous value.
        texts.push_back(value.empty() ? "" : parser.parse(attribute, value));
    }
    return JoinTexts(texts, parser.separator == nullptr ? "" : parser.separator);
}

}  // namespace apiclient
