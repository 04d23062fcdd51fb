#pragma once

#include <algorithm>
#include <charconv>
#include <concepts>
#include <limits>
#include <locale>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

/** Formatting and parsing of numbers and lists for the attribute classes. */

/**
 * Returns the number at the start of a string as a stream reads it, but independently of the locale: 0 if
 * there is none, the nearest one if it is out of range.
 */
template <std::floating_point Number>
Number NumberOfText(const std::string& text) {
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    Number number = 0;
    stream >> number;
    return number;
}

/** Does the same without a stream, which is much faster: a filter parses one number per listed object. */
template <std::signed_integral Number>
Number NumberOfText(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
    const bool is_negative = text.starts_with('-');
    if (text.starts_with('+') && !text.starts_with("+-"))
        text.remove_prefix(1);
    Number number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc::result_out_of_range)
        return number;
    return is_negative ? std::numeric_limits<Number>::min() : std::numeric_limits<Number>::max();
}

/** Returns a number as a stream writes it by default. */
template <class Number>
std::string TextOfNumber(Number number) {
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    stream << number;
    return stream.str();
}

std::string JoinTexts(const std::vector<std::string>& texts, std::string_view separator);

/** Splits at spaces and drops empty pieces. */
std::vector<std::string> WordsOf(const std::string& text);

/** Replace each ":" in an item by a mark, and the reverse, for lists that are joined by ":". */
std::string MarkColons(std::string text);
std::string UnmarkColons(std::string text);
