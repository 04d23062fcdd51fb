#include "apiMgmt/apiStub/base/apiAttributes/sizeValue.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>

#include "apiMgmt/common/utils/stringUtil.h"

namespace {

constexpr uint64_t kMaximum = std::numeric_limits<uint64_t>::max();
constexpr uint64_t kManufacturerBlock = 500;

// Returns the integer part: 0 for a negative number and NaN, the maximum for one that is too large.
uint64_t ToUnsigned(double value) {
    if (!(value > 0)) {
        return 0;
    }
    return value < static_cast<double>(kMaximum) ? static_cast<uint64_t>(value) : kMaximum;
}

uint64_t BlocksOf(double number, uint64_t divisor) {
    return ToUnsigned(number * static_cast<double>(divisor)) / SIZEValue::blockSize;
}

// Integers are parsed as such, because a double cannot represent all of them.
uint64_t NumericValue(const std::string& text) {
    const bool is_whole = text.find_first_not_of("+-0123456789 \f\n\r\t\v") == std::string::npos;
    return is_whole ? ParseUnsigned(text) : ToUnsigned(ParseDouble(text));
}

std::string FirstWord(const std::string& text) {
    std::string word = text;
    TrimLeft(word);
    return word.substr(0, word.find_first_of(" \f\n\r\t\v"));
}

uint64_t ValueWithUnit(std::string text) {
    Trim(text);
    const char* behind_number = nullptr;
    const double number = ParseDouble(text, &behind_number);
    const std::string word = FirstWord(behind_number);
    for (const SIZEValue::Unit& unit : SIZEValue::dataSizeTypes) {
        if (CompareNoCase(word, unit.shortName) == 0 || CompareNoCase(word, unit.letter) == 0) {
            return BlocksOf(number, unit.divisor);
        }
    }
    return ParseUnsigned(text);
}

const SIZEValue::Unit* LargestUnitWithin(std::span<const SIZEValue::Unit> units, uint64_t bytes) {
    for (size_t i = units.size(); i-- > 0;) {
        if (!units[i].shortName.empty() && units[i].divisor <= bytes) {
            return &units[i];
        }
    }
    return nullptr;
}

std::string TextInUnit(uint64_t bytes, const SIZEValue::Unit& unit) {
    const double value = static_cast<double>(bytes) / static_cast<double>(unit.divisor);
    auto whole = static_cast<unsigned long>(value);
    const double fraction = (value - static_cast<double>(whole)) * 100;
    // Checked before rounding: less than a hundredth is not shown.
    if (static_cast<int>(fraction) == 0) {
        return FormatString("%lu %s", whole, unit.shortName.data());
    }
    auto hundredths = static_cast<unsigned long>(std::floor(fraction + 0.5));
    if (hundredths == 100) {
        hundredths = 0;
        ++whole;
    }
    return FormatString("%lu.%02lu %s", whole, hundredths, unit.shortName.data());
}

}  // namespace

constinit const SIZEValue::Unit SIZEValue::dataSizeTypes[6] = {
    {0, 512, "", "B"},          {1, 1024, "KB", "K"},          {2, 1048576, "MB", "M"},
    {3, 1073741824, "GB", "G"}, {4, 1099511627776, "TB", "T"}, {5, 1125899906842624, "PB", "P"},
};

constinit const SIZEValue::Unit SIZEValue::dataSizeTypesManu[6] = {
    {0, 500, "", "B"},          {1, 1000, "KB", "K"},          {2, 1000000, "MB", "M"},
    {3, 1000000000, "GB", "G"}, {4, 1000000000000, "TB", "T"}, {5, 1000000000000000, "PB", "P"},
};

std::string SIZEValue::ToText() const {
    if (!manufacturerUnits) {
        return std::to_string(count);
    }
    // count * 512 / 500 without overflow.
    return std::to_string(count / kManufacturerBlock * blockSize +
                          count % kManufacturerBlock * blockSize / kManufacturerBlock);
}

SIZEValue SIZEValue::FromText(const std::string& text) {
    SIZEValue size;
    if (!text.empty()) {
        size.count = IsNumeric(text) ? NumericValue(text) : ValueWithUnit(text);
    }
    return size;
}

std::string SIZEValue::ToDisplayText() const {
    const uint64_t bytes = count > kMaximum / blockSize ? kMaximum : count * blockSize;
    if (bytes == 0) {
        return {};
    }
    const Unit* unit = LargestUnitWithin(manufacturerUnits ? dataSizeTypesManu : dataSizeTypes, bytes);
    return unit == nullptr ? FormatString("%ld bytes", static_cast<long>(bytes)) : TextInUnit(bytes, *unit);
}

void SIZEValue::Set(int unitIndex, double value) {
    const auto* unit = std::ranges::find(dataSizeTypes, unitIndex, &Unit::index);
    count = unit == std::end(dataSizeTypes) ? 0 : BlocksOf(value, unit->divisor);
}
