#pragma once

#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>

namespace arraysim {

/** A whole text that is a decimal number; nothing else, no sign, no blanks. */
inline std::optional<uint32_t> ReadUint32(std::string_view text) {
    uint32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return number;
}

}  // namespace arraysim
