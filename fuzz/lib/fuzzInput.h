#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/** A reader that consumes numbers and strings from the start of a fuzzer's bytes. Beyond their end it returns
   0 or an empty string, so every input is valid. Views are valid as long as the bytes. */
class FuzzInput {
  public:
    FuzzInput(const uint8_t* data, size_t size) : rest_(reinterpret_cast<const char*>(data), size) {}

    bool IsEmpty() const { return rest_.empty(); }

    uint8_t Byte() { return static_cast<uint8_t>(Text(1).empty() ? 0 : last_.front()); }

    /** Returns 0 to bound - 1. */
    size_t Below(size_t bound) {
        size_t number = Byte();
        if (bound > 256)
            number = number * 256 + Byte();
        if (bound > 65536)
            number = number * 256 + Byte();
        return number % bound;
    }

    bool OnceIn(size_t count) { return Below(count) == 1 % count; }

    /** Returns the next `length` bytes, or fewer at the end. */
    std::string_view Text(size_t length) {
        last_ = rest_.substr(0, length);
        rest_.remove_prefix(last_.size());
        return last_;
    }

    /** Returns the bytes up to the next newline, and consumes that as well. */
    std::string_view Line() {
        const std::string_view line = Text(std::min(rest_.find('\n'), rest_.size()));
        Text(1);
        return line;
    }

    std::string_view Rest() { return Text(rest_.size()); }

  private:
    std::string_view rest_;
    std::string_view last_;
};
