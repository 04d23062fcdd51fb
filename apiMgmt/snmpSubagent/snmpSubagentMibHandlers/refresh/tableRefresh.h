#pragma once

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/handOver.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibDefinition.h"

/**
 * Refreshes tables: fetches all objects of a kind from the API manager and merges them into the columns of
 * that kind's table. Rows are packed: row n is the n-th matching object of its parent in the latest response.
 * A merge never waits: everything that it needs is fetched before. Main thread only, apart from the fetch of
 * get_table_info in background mode.
 */

/**
 * Fetches the list of a kind of object and merges it into the table whose first column is col_id. In
 * background mode, only fetches it, into the hand-over. Returns 0, or non-zero on failure.
 */
int get_table_info(int col_id, const char* apiName, int map_size, const attribute_map_entry* map,
                   bool background);

/** Checks and merges a response. Returns 0 or 1. If the check fails, the store is unchanged. */
int process_table_info(int col_id, const char* apiName, int map_size, const attribute_map_entry* map,
                       const table_response& response);

/** Counts a refresh whose response did not arrive. The functions above count their own failures, except that
 * a fetch in background mode leaves it to the main thread. */
void note_failed_refresh(int col_id);
