#pragma once

#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>

namespace arraysim {

/** Parses a string of decimal digits. Returns none for any other string or a number that is too large. */
inline std::optional<uint32_t> ParseUint32(std::string_view text) {
    uint32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return number;
}

}  // namespace arraysim
