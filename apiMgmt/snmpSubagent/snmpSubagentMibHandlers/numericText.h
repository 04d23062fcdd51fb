#pragma once

#include <cstdint>
#include <string_view>

/**
 * The 32 bits that a column of this smi_basetype holds of a text of the API: unsigned for type 4, signed
 * otherwise. Leading white space, a sign and digits count; no digits give 0; a number out of range gives
 * the nearest end of the range.
 */
uint32_t number_from_text(std::string_view text, uint32_t data_type);
