#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/** A storage size in blocks of 512 bytes. */
struct SIZEValue {
    /** A unit: its size in bytes and its names. */
    struct Unit {
        int index;
        uint64_t divisor;
        std::string_view shortName;
        std::string_view letter;
    };
    static const Unit dataSizeTypes[6];
    static const Unit dataSizeTypesManu[6];  ///< decimal, as makers of disks count

    static constexpr uint32_t blockSize = 512;
    uint64_t count = 0;              ///< blocks
    bool manufacturerUnits = false;  ///< show and write with decimal units

    /** Returns the number of blocks of 512 bytes, or of 500 bytes with manufacturerUnits. */
    std::string ToText() const;

    /** Parses a number of blocks or a number with a unit ("1 GB", "1 g"). Returns 0 for any other string. */
    static SIZEValue FromText(const std::string& text);

    /** Returns a human-readable string such as "1.05 KB"; empty for size 0. */
    std::string ToDisplayText() const;

    /** Sets the size to `value` in the unit with that index in dataSizeTypes; to 0 for an unknown index. */
    void Set(int unitIndex, double value);
};
