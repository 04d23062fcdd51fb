#pragma once

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/elementTable.h"

/** The column that takes the row number instead of an attribute. */
inline constexpr int kRowColumn = -1;

/**
 * Merges one column: map_place says which attribute of the map, or kRowColumn. Rows that the answer no
 * longer holds are no longer cached afterwards. 0 or 1; what was merged before a failure stays.
 */
int get_col_info(int col_id, int32_t first_var, const element_table& elements, int map_place,
                 post_process_type post_process);
