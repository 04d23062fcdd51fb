#include "apiMgmt/common/utils/stringUtil.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "apiMgmt/common/platform/cLocale.h"

namespace {

constexpr std::string_view kWhiteSpace = " \f\n\r\t\v";

// Not tolower, which depends on the locale.
char LowerCase(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

struct NumberText {
    bool is_negative = false;
    uint64_t magnitude = 0;  // capped at the maximum
};

// Reads whitespace, a sign and digits like atoi, and ignores the rest.
NumberText FindNumber(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(kWhiteSpace), text.size()));
    NumberText number;
    if (!text.empty() && (text[0] == '-' || text[0] == '+')) {
        number.is_negative = text[0] == '-';
        text.remove_prefix(1);
    }
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number.magnitude);
    if (result.ec == std::errc::result_out_of_range) {
        number.magnitude = UINT64_MAX;
    }
    return number;
}

}  // namespace

char* SafeStrncpy(char* destination, const char* source, size_t size) {
    if (size == 0) {
        return destination;
    }
    const size_t length = source == nullptr ? 0 : strnlen(source, size - 1);
    if (length != 0) {
        memmove(destination, source, length);
    }
    destination[length] = '\0';
    return destination;
}

std::string FormatString(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    std::string text = FormatStringV(format, arguments);
    va_end(arguments);
    return text;
}

std::string FormatStringV(const char* format, va_list arguments) {
    const CLocaleScope c_locale;
    char short_text[100] = {};
    va_list first_try;
    va_copy(first_try, arguments);
    const int length = vsnprintf(short_text, sizeof short_text, format, first_try);
    va_end(first_try);
    if (length < 0) {
        return std::string("Error in format string: \"") + format + "\"";
    }
    if (static_cast<size_t>(length) < sizeof short_text) {
        return {short_text, static_cast<size_t>(length)};
    }
    std::string text(static_cast<size_t>(length), '\0');
    vsnprintf(text.data(), text.size() + 1, format, arguments);
    return text;
}

void TrimLeft(std::string& text) {
    text.erase(0, text.find_first_not_of(kWhiteSpace));
}

void TrimRight(std::string& text) {
    text.erase(text.find_last_not_of(kWhiteSpace) + 1);
}

void Trim(std::string& text) {
    TrimRight(text);
    TrimLeft(text);
}

std::string ToLower(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), LowerCase);
    return lower;
}

int CompareNoCase(std::string_view left, std::string_view right) {
    const size_t common = std::min(left.size(), right.size());
    for (size_t i = 0; i < common; ++i) {
        const auto l = static_cast<unsigned char>(LowerCase(left[i]));
        const auto r = static_cast<unsigned char>(LowerCase(right[i]));
        if (l != r) {
            return l < r ? -1 : 1;
        }
    }
    if (left.size() == right.size()) {
        return 0;
    }
    return left.size() < right.size() ? -1 : 1;
}

int ParseInt(std::string_view text) {
    const NumberText number = FindNumber(text);
    const auto magnitude = static_cast<int64_t>(std::min<uint64_t>(number.magnitude, UINT32_MAX));
    return static_cast<int>(
        std::clamp<int64_t>(number.is_negative ? -magnitude : magnitude, INT_MIN, INT_MAX));
}

uint64_t ParseUnsigned(std::string_view text) {
    const NumberText number = FindNumber(text);
    return number.is_negative ? 0 : number.magnitude;
}

bool ParseBool(const std::string& text) {
    return CompareNoCase(text, "true") == 0 || ParseInt(text) == 1;
}

double ParseDouble(const std::string& text, const char** end) {
    const CLocaleScope c_locale;
    char* behind = nullptr;
    const double number = strtod(text.c_str(), &behind);
    if (end != nullptr) {
        *end = behind;
    }
    return number;
}

// Not std::from_chars: LLVM's C++ library supports double only from version 20 on.
std::optional<double> ParseDecimal(const std::string& text, const char** end) {
    const std::string_view digits = std::string_view(text).substr(text.starts_with('-') ? 1 : 0);
    const bool is_decimal = digits.find_first_of(".0123456789") == 0;
    const bool is_hexadecimal = digits.starts_with("0x") || digits.starts_with("0X");
    if (!is_decimal || is_hexadecimal) {
        return std::nullopt;
    }
    const char* behind = nullptr;
    errno = 0;
    const double number = ParseDouble(text, &behind);
    const bool is_out_of_range = errno == ERANGE && (number == 0 || std::isinf(number));
    if (behind == text.c_str() || is_out_of_range) {
        return std::nullopt;
    }
    *end = behind;
    return number;
}

bool IsNumeric(const std::string& text) {
    std::string number = text;
    Trim(number);
    if (number.empty()) {
        return false;
    }
    const char* end = nullptr;
    ParseDouble(number, &end);
    return end == number.c_str() + number.size();
}

void ReplaceAll(std::string& text, const std::string& old_text, const std::string& new_text) {
    if (old_text.empty()) {
        return;
    }
    std::string result;
    size_t position = 0;
    for (size_t found = text.find(old_text); found != std::string::npos;
         found = text.find(old_text, position)) {
        result.append(text, position, found - position).append(new_text);
        position = found + old_text.size();
    }
    result.append(text, position);
    text = std::move(result);
}

void Split(const std::string& text, const std::string& delimiter, std::vector<std::string>& pieces,
           size_t limit) {
    std::vector<std::string> result;  // text may be one of the old pieces
    size_t position = 0;
    while (!text.empty()) {
        const bool takes_the_rest = delimiter.empty() || (limit != 0 && result.size() + 1 == limit);
        const size_t found = takes_the_rest ? std::string::npos : text.find(delimiter, position);
        result.push_back(text.substr(position, found - position));
        if (found == std::string::npos) {
            break;
        }
        position = found + delimiter.size();
        if (position == text.size()) {
            result.emplace_back();
            break;
        }
    }
    pieces = std::move(result);
}

void SplitChar(const std::string& text, char delimiter, std::vector<std::string>& pieces) {
    std::vector<std::string> result;  // text may be one of the old pieces
    size_t position = 0;
    while (position < text.size()) {
        const size_t end = std::min(text.find(delimiter, position), text.size());
        result.push_back(text.substr(position, end - position));
        position = end + 1;
    }
    pieces = std::move(result);
}

// ---- XML ----

namespace {

struct Entity {
    char character;
    std::string_view reference;
};

// The angle brackets come first, because some callers want only these.
constexpr Entity kEntities[] = {
    {'<', "&lt;"}, {'>', "&gt;"}, {'&', "&amp;"}, {'\'', "&apos;"}, {'"', "&quot;"}};
constexpr size_t kAngleBracketCount = 2;

// Represents every control character.
constexpr std::string_view kControlReference = "&#x0a;";

size_t EntityCount(bool angle_brackets_only) {
    return angle_brackets_only ? kAngleBracketCount : std::size(kEntities);
}

void AppendEscaped(std::string& escaped, char c, bool angle_brackets_only) {
    for (size_t i = 0; i < EntityCount(angle_brackets_only); ++i) {
        if (kEntities[i].character == c) {
            escaped += kEntities[i].reference;
            return;
        }
    }
    if (!angle_brackets_only && static_cast<unsigned char>(c) < 32) {
        escaped += kControlReference;
    } else {
        escaped += c;
    }
}

const Entity* FindEntityAtStart(std::string_view text, bool angle_brackets_only) {
    for (size_t i = 0; i < EntityCount(angle_brackets_only); ++i) {
        if (text.starts_with(kEntities[i].reference)) {
            return &kEntities[i];
        }
    }
    return nullptr;
}

}  // namespace

std::string EscapeXml(const std::string& text, bool angle_brackets_only) {
    std::string escaped;
    escaped.reserve(text.size());
    for (const char c : text) {
        AppendEscaped(escaped, c, angle_brackets_only);
    }
    return escaped;
}

std::string UnescapeXml(const std::string& text, bool angle_brackets_only) {
    std::string plain;
    plain.reserve(text.size());
    std::string_view rest = text;
    while (!rest.empty()) {
        const Entity* entity = rest.front() == '&' ? FindEntityAtStart(rest, angle_brackets_only) : nullptr;
        plain += entity == nullptr ? rest.front() : entity->character;
        rest.remove_prefix(entity == nullptr ? 1 : entity->reference.size());
    }
    return plain;
}
