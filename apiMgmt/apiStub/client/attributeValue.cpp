#include "apiMgmt/apiStub/client/attributeValue.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <chrono>
#include <ctime>
#include <iterator>
#include <limits>
#include <utility>

#include "apiMgmt/apiStub/base/apiAttributes/attributeText.h"
#include "apiMgmt/apiStub/client/clientError.h"
#include "apiMgmt/common/platform/cLocale.h"
#include "apiMgmt/common/utils/apiMethodError.h"
#include "apiMgmt/common/utils/netUtil.h"
#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/common/utils/wholeNumber.h"

namespace tessera {

// ---- readers of each kind ----

namespace {

using Text = std::optional<std::string>;

/** A number at the start of a string, and the rest of the string. */
struct RealPrefix {
    double number;
    std::string rest;
};

std::optional<RealPrefix> ReadRealPrefix(std::string text) {
    Trim(text);
    if (text.starts_with('+') && !text.starts_with("+-"))
        text.erase(0, 1);
    const char* end = nullptr;
    const std::optional<double> number = ParseDecimal(text, &end);
    if (!number)
        return std::nullopt;
    std::string rest = text.substr(static_cast<size_t>(end - text.c_str()));
    Trim(rest);
    return RealPrefix{*number, rest};
}

Text ReadAny(const BASEApiAttribute& /*attribute*/, const std::string& text) {
    return text;
}

Text ReadBoolean(const BASEApiAttribute& /*attribute*/, const std::string& text) {
    const auto is_one_of = [&](std::initializer_list<const char*> words) {
        return std::ranges::any_of(words, [&](const char* word) { return CompareNoCase(text, word) == 0; });
    };
    if (is_one_of({"true", "yes", "on", "1"}))
        return "True";
    return is_one_of({"false", "no", "off", "0"}) ? Text("False") : std::nullopt;
}

Text ReadInteger(const BASEApiAttribute& /*attribute*/, const std::string& text) {
    const std::optional<int64_t> number = ParseWhole<int64_t>(text);
    return number ? Text(std::to_string(*number)) : std::nullopt;
}

Text ReadReal(const BASEApiAttribute& /*attribute*/, const std::string& text) {
    const std::optional<RealPrefix> real = ReadRealPrefix(text);
    return real && real->rest.empty() ? Text(text) : std::nullopt;
}

Text ReadReference(const BASEApiAttribute& /*attribute*/, const std::string& text) {
    return APIObjectInstance::FromText(text) ? Text(text) : std::nullopt;
}

Text ReadReferences(const BASEApiAttribute& attribute, const std::string& text) {
    std::vector<std::string> pieces;
    Split(text, ":", pieces);
    const auto is_reference = [&](const std::string& piece) {
        return ReadReference(attribute, UnmarkColons(piece)).has_value();
    };
    return std::ranges::all_of(pieces, is_reference) ? Text(text) : std::nullopt;
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

Text ReadTime(const BASEApiAttribute& /*attribute*/, const std::string& text) {
    const CLocaleScope c_locale;
    std::string trimmed = text;
    Trim(trimmed);
    std::optional<std::tm> fields = ReadTimeFields(trimmed, kTimeFormat);
    if (!fields)
        fields = ReadTimeFields(trimmed, kTimeFormat24Hours);
    if (!fields || !IsTime(*fields))
        return std::nullopt;
    std::array<char, 64> written{};
    return std::string(written.data(), strftime(written.data(), written.size(), kTimeFormat, &*fields));
}

/** Returns whether the string is a number of at least 0 that fits, with or without a known unit. */
bool IsSize(const std::string& text) {
    constexpr auto kLimit = static_cast<double>(std::numeric_limits<uint64_t>::max());
    const std::optional<RealPrefix> real = ReadRealPrefix(text);
    if (!real || real->number < 0)
        return false;
    if (real->rest.empty())
        return real->number < kLimit;
    const auto* unit = std::ranges::find_if(SIZEValue::dataSizeTypes, [&](const SIZEValue::Unit& each) {
        return CompareNoCase(real->rest, each.letter) == 0 || CompareNoCase(real->rest, each.shortName) == 0;
    });
    return unit != std::end(SIZEValue::dataSizeTypes) &&
           real->number * static_cast<double>(unit->divisor) < kLimit;
}

Text ReadSize(const BASEApiAttribute& /*attribute*/, const std::string& text) {
    return IsSize(text) ? Text(SIZEValue::FromText(text).ToText()) : std::nullopt;
}

/**
 * Returns whether descriptors read the whole string as a temperature: whole degrees, then a space and a unit.
 */
bool IsDegrees(std::string text) {
    Trim(text);
    const size_t space = text.find(' ');
    const std::optional<int64_t> number = ParseWhole<int64_t>(text.substr(0, space));
    std::string unit = space == std::string::npos ? "" : text.substr(space);
    Trim(unit);
    return number && std::in_range<int32_t>(*number) &&
           (unit.empty() || CompareNoCase(unit, "C") == 0 || CompareNoCase(unit, "F") == 0);
}

/** Returns whether both halves, as in "45 C/113 F", are equal, as descriptors require. */
bool HalvesAgree(const std::string& first, std::string second) {
    Trim(second);
    const TEMPERATUREValue temperature = TEMPERATUREValue::FromText(first);
    return TEMPERATUREValue::FromText(second).GetCelsius() == temperature.GetCelsius() ||
           second == std::to_string(temperature.GetFahrenheit()) + " F";
}

Text ReadTemperature(const BASEApiAttribute& /*attribute*/, const std::string& text) {
    std::vector<std::string> halves;
    Split(text, "/", halves);
    const bool are_degrees = !halves.empty() && halves.size() <= 2 && std::ranges::all_of(halves, IsDegrees);
    return are_degrees && (halves.size() == 1 || HalvesAgree(halves[0], halves[1])) ? Text(text)
                                                                                    : std::nullopt;
}

// Descriptors ignore everything before the first digit. Here, only one letter is allowed, as in "R06.03".
Text ReadVersion(const BASEApiAttribute& /*attribute*/, const std::string& text) {
    constexpr int64_t kMaximum[] = {99, 99, 999, 9999, 99};
    std::string numbers = text;
    Trim(numbers);
    if (!numbers.empty() && std::isalpha(static_cast<unsigned char>(numbers[0])))
        numbers.erase(0, 1);
    std::vector<std::string> fields;
    Split(numbers, ".", fields);
    if (fields.empty() || fields.size() > std::size(kMaximum))
        return std::nullopt;
    for (size_t i = 0; i < fields.size(); ++i) {
        const std::optional<int64_t> number = ParseWhole<int64_t>(fields[i]);
        if (!number || fields[i][0] == '-' || *number > kMaximum[i])
            return std::nullopt;
    }
    return text;
}

Text ReadIPv4(const BASEApiAttribute& /*attribute*/, const std::string& text) {
    in_addr address;
    return inet_pton(AF_INET, text.c_str(), &address) == 1 ? Text(text) : std::nullopt;
}

Text ReadIPv6(const BASEApiAttribute& /*attribute*/, const std::string& text) {
    std::string address;
    int prefix_length = 0;
    return ParseIPv6Address(text, address, prefix_length) ? Text(address) : std::nullopt;
}

Text ReadListFilter(const BASEApiAttribute& /*attribute*/, const std::string& text) {
    const std::unique_ptr<FILTERList> list = FILTERList::FromText(text);
    return list && !list->items.empty() ? Text(text) : std::nullopt;
}

ENUMTable RowsOf(const BASEApiAttribute& attribute) {
    return static_cast<const ENUMTABLEApiAttribute&>(attribute).GetTable();
}

bool IsReadableName(const ENUMRow& row, const std::string& text) {
    return CompareNoCase(ReadableName(row), text) == 0;
}

Text ReadEnumeration(const BASEApiAttribute& attribute, const std::string& text) {
    const ENUMTable rows = RowsOf(attribute);
    if (rows.size() == 0)
        return text;
    if (const ENUMRow* row = rows.FindDescription(text))
        return std::string(row->Description);
    const std::optional<int64_t> id = ParseWhole<int64_t>(text);
    for (const ENUMRow& row : rows) {
        if (IsReadableName(row, text) || id == row.Value)
            return std::string(row.Description);
    }
    return std::nullopt;
}

/** Reads words separated by spaces. */
template <auto read>
Text ReadEach(const BASEApiAttribute& attribute, const std::string& text) {
    std::vector<std::string> words = WordsOf(text);
    for (std::string& word : words) {
        const Text value = read(attribute, word);
        if (!value)
            return std::nullopt;
        word = *value;
    }
    return JoinTexts(words, " ");
}

Text ReadMask(const BASEApiAttribute& attribute, const std::string& text) {
    // A readable name may contain spaces.
    const bool is_single =
        std::ranges::any_of(RowsOf(attribute), [&](const ENUMRow& row) { return IsReadableName(row, text); });
    return is_single ? ReadEnumeration(attribute, text) : ReadEach<ReadEnumeration>(attribute, text);
}

template <class Attribute>
const Attribute* As(const BASEApiAttribute& attribute) {
    return dynamic_cast<const Attribute*>(&attribute);
}

struct Kind {
    bool (*contains)(const BASEApiAttribute&);
    Text (*read)(const BASEApiAttribute&, const std::string&);
    const char* legal;  ///< null if it depends on the attribute
};

template <class Attribute>
constexpr Kind KindOf(Text (*read)(const BASEApiAttribute&, const std::string&),
                      const char* legal = nullptr) {
    return {[](const BASEApiAttribute& attribute) { return As<Attribute>(attribute) != nullptr; }, read,
            legal};
}

/** A derived class precedes its base. */
constexpr Kind kKinds[] = {
    KindOf<INSTANCEIDApiAttribute>(ReadAny, "an instance ID"),
    KindOf<STRINGApiAttribute>(ReadAny),
    KindOf<ENUMApiAttribute>(ReadEnumeration),
    KindOf<ENUMMASKApiAttribute>(ReadMask),
    KindOf<BOOLEANApiAttribute>(ReadBoolean, "True or False"),
    KindOf<INTApiAttribute>(ReadInteger),
    KindOf<DOUBLEApiAttribute>(ReadReal),
    KindOf<INTARRAYApiAttribute>(ReadEach<ReadInteger>),
    KindOf<STRINGARRAYApiAttribute>(ReadAny, "strings"),
    KindOf<OBJECTApiAttribute>(
        ReadReference, "a reference: ID, type and name of an object, for example '64702.17 TsDisk 01-17'"),
    KindOf<OBJECTARRAYApiAttribute>(ReadReferences, "references, each with ID, type and name of an object"),
    KindOf<DATETIMEApiAttribute>(ReadTime,
                                 "a time, for example '10/31/2016 01:02:03 PM' or '10/31/2016-13:02:03'"),
    KindOf<SIZEApiAttribute>(ReadSize,
                             "a number of 512-byte blocks, or a number with a unit, for example '1.5 TB'"),
    KindOf<TEMPERATUREApiAttribute>(ReadTemperature, "a temperature, for example '45 C' or '113 F'"),
    KindOf<VERSIONApiAttribute>(ReadVersion, "a version, for example '06.03.01.002'"),
    KindOf<IPV4ADDRESSApiAttribute>(ReadIPv4, "an IPv4 address"),
    KindOf<IPV6ADDRESSApiAttribute>(ReadIPv6, "an IPv6 address"),
    KindOf<GETLISTFILTERApiAttribute>(ReadListFilter, "a filter"),
    KindOf<BASEApiAttribute>(ReadAny, "a structured argument"),
};

const Kind& FindKind(const BASEApiAttribute& attribute) {
    return *std::ranges::find_if(kKinds, [&](const Kind& kind) { return kind.contains(attribute); });
}

}  // namespace

std::optional<std::string> ReadValue(const BASEApiAttribute& attribute, const std::string& text) {
    return FindKind(attribute).read(attribute, text);
}

bool IsWritable(std::string_view text) {
    return std::ranges::none_of(text, [](unsigned char c) { return c < ' ' && c != '\n'; });
}

std::string CheckedValue(const BASEApiAttribute& attribute, const std::string& text,
                         const std::string& name) {
    const Text value = text.empty() ? Text(text) : ReadValue(attribute, text);
    if (!value)
        ThrowInvalidValue(attribute, text, name);
    if (!IsWritable(*value))
        throw InvalidArgument(name + " contains a control character, which a document cannot contain", name,
                              LegalValues(attribute));
    try {
        attribute.Validate(*value);
    } catch (const APIMethodError&) {
        ThrowInvalidValue(attribute, text, name);
    }
    return *value;
}

void ThrowInvalidValue(const BASEApiAttribute& attribute, const std::string& text, const std::string& name) {
    const std::string expected = LegalValues(attribute);
    throw InvalidArgument("invalid value '" + text + "' for " + name + "; expected " + expected, name,
                          expected);
}

std::string IdentifierOf(const ENUMTABLEApiAttribute& attribute, int id) {
    const std::string_view identifier = attribute.GetTable().DescriptionOf(id);
    if (identifier.empty())
        ThrowInvalidValue(attribute, std::to_string(id), attribute.GetXmlName());
    return std::string(identifier);
}

std::string TextOfReal(double number) {
    std::array<char, 32> buffer;
    const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number);
    return {buffer.data(), end};
}

const BASEApiAttribute& DescriptorIn(const ATTRIBUTEList& list, const BASEApiAttribute& attribute,
                                     const std::string& owner) {
    const BASEApiAttribute* found = FindAttributeIn(list, attribute.GetXmlName());
    if (found == nullptr)
        throw InvalidArgument(owner + " has no attribute " + attribute.GetXmlName(), attribute.GetXmlName());
    return *found;
}

// ---- descriptions ----

namespace {

std::string Singular(const std::string& unit) {
    return unit.empty() ? unit : unit.substr(0, unit.size() - 1);
}

/** A negative limit means none. */
std::string DescribeLimits(int64_t low, int64_t high, const std::string& unit) {
    if (low >= 0 && high >= 0)
        return std::to_string(low) + " to " + std::to_string(high) + unit;
    if (low >= 0)
        return "at least " + std::to_string(low) + (low == 1 ? Singular(unit) : unit);
    return high >= 0 ? "at most " + std::to_string(high) + (high == 1 ? Singular(unit) : unit) : "";
}

template <class Attribute, class Properties>
std::string DescribeNumber(const Attribute& attribute, const std::string& kind) {
    const auto& bounds = static_cast<const Properties&>(attribute.GetProperties());
    const std::string limits = DescribeLimits(bounds.minValue, bounds.maxValue, "");
    return limits.empty() ? kind : kind + ", " + limits;
}

std::string DescribeString(const STRINGApiAttribute& attribute) {
    const auto& rules =
        static_cast<const STRINGApiAttribute::STRINGAttributeProperties&>(attribute.GetProperties());
    const bool is_checked = rules.minLength != 0 || rules.maxLength != 0;
    const std::string limits =
        is_checked ? DescribeLimits(rules.minLength == 0 ? -1 : rules.minLength, rules.maxLength, " bytes")
                   : "";
    std::string description = limits.empty() ? "a string" : "a string of " + limits;
    if (!rules.invalidChars.empty())
        description += " without";
    for (const char c : rules.invalidChars)
        description += std::string(" ") + c;
    return description;
}

/** Lists the identifiers, with readable names that say more: "Up, NotPresent (Not Present)". */
std::string DescribeRows(ENUMTable rows) {
    std::string description;
    for (const ENUMRow& row : rows) {
        description += (description.empty() ? "" : ", ") + std::string(row.Description);
        if (!HaveSameLetters(row.Description, row.UiString))
            description += " (" + ReadableName(row) + ")";
    }
    return description;
}

std::string DescribeEnumeration(ENUMTable rows, bool is_single) {
    if (rows.size() == 0)
        return is_single ? "an identifier" : "identifiers separated by spaces";
    return (is_single ? "one of " : "some of ") + (rows.size() <= kMaximumRowsInMessage
                                                       ? DescribeRows(rows)
                                                       : std::to_string(rows.size()) + " values");
}

}  // namespace

std::string ReadableName(const ENUMRow& row) {
    std::string name;
    for (const char c : row.UiString) {  // ISO-8859-1
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            name += c;
        } else {
            name += static_cast<char>(0xc0 | byte >> 6);
            name += static_cast<char>(0x80 | (byte & 0x3f));
        }
    }
    return name;
}

bool HaveSameLetters(std::string_view left, std::string_view right) {
    const auto letters = [](std::string_view text) {
        std::string kept;
        std::copy_if(text.begin(), text.end(), std::back_inserter(kept),
                     [](unsigned char c) { return std::isalnum(c); });
        return ToLower(kept);
    };
    return letters(left) == letters(right);
}

std::string LegalValues(const BASEApiAttribute& attribute) {
    const char* legal = FindKind(attribute).legal;
    if (legal != nullptr)
        return legal;
    if (const auto* string = As<STRINGApiAttribute>(attribute))
        return DescribeString(*string);
    if (const auto* enumeration = As<ENUMTABLEApiAttribute>(attribute))
        return DescribeEnumeration(enumeration->GetTable(), As<ENUMApiAttribute>(attribute) != nullptr);
    if (const auto* integer = As<INTApiAttribute>(attribute))
        return DescribeNumber<INTApiAttribute, INTApiAttribute::INTAttributeProperties>(*integer,
                                                                                        "an integer");
    if (const auto* real = As<DOUBLEApiAttribute>(attribute))
        return DescribeNumber<DOUBLEApiAttribute, DOUBLEApiAttribute::DOUBLEAttributeProperties>(*real,
                                                                                                 "a number");
    return DescribeNumber<INTARRAYApiAttribute, INTARRAYApiAttribute::INTARRAYAttributeProperties>(
        static_cast<const INTARRAYApiAttribute&>(attribute), "integers separated by spaces");
}

}  // namespace tessera
