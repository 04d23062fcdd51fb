#pragma once

#include <cstdint>
#include <string_view>

/**
 * Numbers in the API's texts: leading white space, a sign and digits count, what follows is ignored; no
 * digits give 0; a number out of range gives the nearest end of the range.
 */

int64_t signed_from_text(std::string_view text, int64_t least, int64_t greatest);
uint64_t unsigned_from_text(std::string_view text);

/** Range of a signed 32-bit integer: API indexes. */
int32_t index_from_text(std::string_view text);

/** The 32 bits that a column of this smi_basetype holds: unsigned for type 4, signed otherwise. */
uint32_t number_from_text(std::string_view text, uint32_t data_type);
