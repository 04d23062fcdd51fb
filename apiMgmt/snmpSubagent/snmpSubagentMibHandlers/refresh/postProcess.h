#pragma once

#include <cstdint>

/**
 * What happens to a variable after a refresh has written it: texts become numbers, values become the units
 * of the MIB. All take the index of the variable; main thread only.
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

/** An attribute that the object lacks reads as 0. */
void no_api_object_post_process(int32_t var_index);

/** Cuts a version at its last dot: "6.5.2.12" becomes "6.5.2". */
void version_post_process(int32_t var_index);

/** 512-byte blocks to units of 10^9 bytes, rounded down. */
void size_post_process(int32_t var_index);

/** A ForceTrap column reads as "Empty". */
void force_trap_post_process(int32_t var_index);

/** Joins the row's vendor and product. */
void vendor_product_post_process(int32_t var_index);

/** "https://" and the array's own address. */
void management_url_post_process(int32_t var_index);

/** get_fn of COLID_globalStatus: the worst active alert that nobody has acknowledged. Result 0. */
int compute_global_status(int32_t var_index, bool background);
