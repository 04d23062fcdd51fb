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

/** Numbers and lists as the attribute classes write and read them. */

/** The number at the start of a text as a stream reads it, in any locale of the process: 0 when there is
   none, the nearest one when it is out of range. */
template <std::floating_point Number>
Number NumberOfText(const std::string& text) {
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    Number number = 0;
    stream >> number;
    return number;
}

/** The same without the stream, whose making costs many times the reading: a filter reads a number of every
   object of a list. */
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

/** A number as a stream writes it by default. */
template <class Number>
std::string TextOfNumber(Number number) {
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    stream << number;
    return stream.str();
}

std::string JoinTexts(const std::vector<std::string>& texts, std::string_view separator);

/** The pieces between blanks, empty ones left out. */
std::vector<std::string> WordsOf(const std::string& text);

/** A ":" within an item of a list that is joined by ":" travels as a mark. */
std::string MarkColons(std::string text);
std::string UnmarkColons(std::string text);
