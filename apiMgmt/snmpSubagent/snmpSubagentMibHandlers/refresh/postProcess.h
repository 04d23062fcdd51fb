#pragma once

#include <cstdint>

/**
 * Post-processes: they convert a variable that a refresh has just written, from strings to numbers and to the
 * units of the MIB. `var_index` is the variable. Main thread only.
 */

void tsstatus_enum_post_process(int32_t var_index);
void connectivity_enum_post_process(int32_t var_index);
void alert_category_post_process(int32_t var_index);
void alert_status_post_process(int32_t var_index);
void battery_status_post_process(int32_t var_index);
void truth_value_post_process(int32_t var_index);
void io_port_type_post_process(int32_t var_index);

/** The array counts storage in blocks of 512 bytes. */
inline constexpr uint64_t kBlocksPerGb = 1953125;  /**< 10^9 bytes */
inline constexpr uint64_t kBlocksPerGib = 2097152; /**< 2^30 bytes */

/** Stores 0 for an attribute that the object lacks. */
void no_api_object_post_process(int32_t var_index);

/** Truncates a version at its last dot: "6.5.2.12" becomes "6.5.2". */
void version_post_process(int32_t var_index);

/** Converts 512-byte blocks to units of 10^9 bytes, rounded down. */
void size_post_process(int32_t var_index);

/** Stores "Empty" in a ForceTrap column. */
void force_trap_post_process(int32_t var_index);

/** Stores the row's vendor and product, separated by a space. */
void vendor_product_post_process(int32_t var_index);

/** Stores "https://" and the array's address, or the vendor's site if the address is unknown. */
void management_url_post_process(int32_t var_index);

/**
 * get_fn of COLID_globalStatus: stores the worst status of active alerts that have not been acknowledged.
 * Returns 0.
 */
int compute_global_status(int32_t var_index, bool background);
