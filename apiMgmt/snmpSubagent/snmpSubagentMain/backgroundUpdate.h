#pragma once

#include <cstdint>

/**
 * Keeps the store fresh: a scan over the columns, as a ring, decides what may be refreshed next. Small
 * tables are refreshed on the main thread; large ones are fetched by the GetList task and merged on the
 * main thread afterwards.
 */

extern int bgUpdateColumn;           /**< where the next scan begins; main thread only */
extern int64_t bgUpdateLastFetch_us; /**< when the last refresh or request was started here; likewise */

/** One scan. Starts at most one refresh, and at most one a second. */
void check_for_table_changes();

/** Creates the thread. 0 or 1. */
int StartGetListTask();

/** The thread: waits for requests and fetches; never touches the store. */
void* GetListTaskMain(void* argument);
