#pragma once

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/handOver.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibDefinition.h"

/**
 * Moves the array's state into the store: asks the API manager for all objects of a kind and merges the
 * answer into the columns of that kind's table. Rows are packed: the n-th matching object of a parent is
 * row n, so a row number is a position in the last answer. Main thread only, apart from the fetch of
 * get_table_info in background mode. A merge never waits: whatever it needs is fetched before it begins.
 */

/**
 * Fetches the list of an object and merges it into the table whose first column is col_id. In background
 * mode it only fetches, into the hand-over. 0, otherwise non-zero.
 */
int get_table_info(int col_id, const char* apiName, int map_size, const attribute_map_entry* map,
                   bool background);

/** Merges a response. 0 or 1; a failure before the merge leaves the store as it was. */
int process_table_info(int col_id, const char* apiName, int map_size, const attribute_map_entry* map,
                       const table_response& response);

/** Counts a refresh whose response did not arrive. The functions above count their own failures, except that
 * a fetch in background mode leaves it to the main thread. */
void note_failed_refresh(int col_id);
