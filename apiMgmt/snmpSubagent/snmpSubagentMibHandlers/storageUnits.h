#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

/** The array counts storage in blocks of 512 bytes. */

inline constexpr uint64_t kBlocksPerGb = 1953125;  /**< 10^9 bytes */
inline constexpr uint64_t kBlocksPerGib = 2097152; /**< 2^30 bytes */

/** What an Unsigned32 column can hold of a number: the greatest value stands for all beyond it. */
inline uint32_t as_number_column(uint64_t number) {
    return static_cast<uint32_t>(std::min<uint64_t>(number, std::numeric_limits<uint32_t>::max()));
}
