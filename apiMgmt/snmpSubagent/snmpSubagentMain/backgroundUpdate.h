#pragma once

#include <atomic>
#include <cstdint>
#include <string>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/tableRefresh.h"

/**
 * Keeps the store fresh: a scan over the columns, as a ring, decides what may be refreshed next. Small
 * tables are refreshed on the main thread; large ones are fetched by the GetList task and merged on the
 * main thread afterwards.
 */

enum bg_update_state : int {
    BGUPDATE_STATE_idle = 0,
    BGUPDATE_STATE_getlist_requested = 1, /**< the GetList task fetches bgUpdateTable */
    BGUPDATE_STATE_getlist_done = 2,      /**< the parked answer waits for the main thread */
    BGUPDATE_STATE_error_on_getlist = 3,
};

/** The handshake. Whoever finds the state addressed to it owns the parked variables until it moves the
    state on; stored with release and read with acquire. */
extern std::atomic<int> bgUpdateState;

// ---- parked variables of the handshake ----
extern int bgUpdateTable;           /**< first column of the table; written by the main thread */
extern std::string bgUpdateApiName; /**< these four are written by the GetList task */
extern int bgUpdateMapSize;
extern const attribute_map_entry* bgUpdateMap;
extern table_response bgUpdateResponse;

// ---- main thread only ----
extern int bgUpdateColumn;           /**< where the next scan begins */
extern int64_t bgUpdateLastFetch_us; /**< when the last refresh or request was started here */

/** One scan. Starts at most one refresh, and at most one a second. */
void check_for_table_changes();

/** Creates the thread. 0 or 1. */
int StartGetListTask();

/** The thread: waits for requests and fetches; never touches the store. */
void* GetListTaskMain(void* argument);

/** get_table_info leaves here what process_table_info needs later. GetList task. */
void park_fetch_arguments(const char* apiName, int map_size, const attribute_map_entry* map);
