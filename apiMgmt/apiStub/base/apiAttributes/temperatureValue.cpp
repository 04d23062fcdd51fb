#include "apiMgmt/apiStub/base/apiAttributes/temperatureValue.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <vector>

#include "apiMgmt/common/utils/stringUtil.h"

namespace {

int32_t ToInt32(int64_t value) {
    return static_cast<int32_t>(
        std::clamp<int64_t>(value, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()));
}

int32_t ToCelsius(int64_t fahrenheit) {
    return ToInt32((5 * fahrenheit - 160) / 9);
}

int32_t ToFahrenheit(int32_t celsius) {
    return ToInt32(int64_t{9} * celsius / 5 + 32);
}

std::string FahrenheitText(int32_t celsius) {
    return FormatString("%i %s", ToFahrenheit(celsius), "F");
}

// Returns degrees Celsius for "45 C", "113 F" or "45".
std::optional<int32_t> ReadPiece(std::string piece) {
    Trim(piece);
    const std::string number = piece.substr(0, piece.find(' '));
    if (!IsNumeric(number)) {
        return std::nullopt;
    }
    const bool is_fahrenheit = piece.back() == 'F' || piece.back() == 'f';
    return is_fahrenheit ? ToCelsius(ParseInt(number)) : ParseInt(number);
}

std::optional<int32_t> Read(const std::string& text) {
    std::vector<std::string> pieces;
    Split(text, "/", pieces);
    if (pieces.empty() || pieces.size() > 2) {
        return std::nullopt;
    }
    const std::optional<int32_t> first = ReadPiece(pieces[0]);
    if (!first || pieces.size() == 1) {
        return first;
    }
    // Both conversions truncate, so the Fahrenheit part of our own string may not convert back to the same
    // value.
    Trim(pieces[1]);
    const bool agree = ReadPiece(pieces[1]) == first || pieces[1] == FahrenheitText(*first);
    return agree ? first : std::nullopt;
}

}  // namespace

void TEMPERATUREValue::SetCelsius(int32_t celsius) {
    celsius_ = celsius;
    fahrenheit_ = ToFahrenheit(celsius);
}

std::string TEMPERATUREValue::ToText() const {
    return FormatString("%i %s/%i %s", celsius_, "C", fahrenheit_, "F");
}

TEMPERATUREValue TEMPERATUREValue::FromText(const std::string& text) {
    return TEMPERATUREValue(Read(text).value_or(0));
}
