#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/** A storage size in blocks of 512 bytes. */
struct SIZEValue {
    /** A unit: its size in bytes and what texts call it. */
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

    /** The number of blocks; with manufacturerUnits, of blocks of 500 bytes. */
    std::string ToText() const;

    /** A number of blocks, or a number with a unit ("1 GB", "1 g"). What cannot be read gives 0. */
    static SIZEValue FromText(const std::string& text);

    /** For people, as in "1.05 KB"; empty for size 0. */
    std::string ToDisplayText() const;

    /** value in the unit of that index (of dataSizeTypes); an unknown one gives 0. */
    void Set(int unitIndex, double value);
};
