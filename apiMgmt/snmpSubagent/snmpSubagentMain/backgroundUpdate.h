#pragma once

#include <cstdint>

/**
 * The refresh schedule: a scan over the columns, as a ring, selects the next table to refresh. Small tables
 * are refreshed on the main thread. Large ones are fetched by the GetList task and merged on the main thread.
 */

extern int bgUpdateColumn;           /**< first column of the next scan; main thread only */
extern int64_t bgUpdateLastFetch_us; /**< when the scan last started a refresh; main thread only */

/** Scans once. Starts at most one refresh, and at most one per second. */
void check_for_table_changes();

/** Starts the GetList task. Returns 0, or 1 after logging the error. */
int StartGetListTask();

/** The GetList task: waits for requests and fetches. Never writes to the store. */
void* GetListTaskMain(void* argument);
