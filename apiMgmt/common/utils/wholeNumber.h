#pragma once

#include <charconv>
#include <concepts>
#include <optional>
#include <string_view>
#include <system_error>

/**
 * Returns the integer that the whole string represents; nothing if it contains anything else or does not fit
 * the type.
 */
template <std::integral Number>
std::optional<Number> ParseWhole(std::string_view text, int base = 10) {
    Number number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}
