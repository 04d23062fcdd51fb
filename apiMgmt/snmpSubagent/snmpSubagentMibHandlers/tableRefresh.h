#pragma once

#include <cstdint>
#include <string>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/folderUsage.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"

/**
 * Moves the array's state into the store: asks the API manager for all objects of a kind and merges the
 * answer into the columns of that kind's table. Rows are packed: the n-th matching object of a parent is
 * row n, so a row number is a position in the last answer. Main thread only, apart from the fetch of
 * get_table_info in background mode. A merge never waits: whatever it needs is fetched before it begins.
 */

/** What a refresh has fetched: the list and, for disk folders, the usage of each. Judged and merged on the main thread,
    whichever thread has fetched and parsed it. */
struct table_response {
    table_response() = default;
    table_response(std::string xml);

    std::string xml;
    parser::XMLParser document{nullptr};
    std::vector<api_response> folder_usages; /**< in the order of the folders in the list */
};

/** One attribute of an API object and the column that it fills. A map is walked in order. */
struct attribute_map_entry {
    const char* attribute;
    uint32_t col_id;
    post_process_type post_process; /**< null: none */
};

/** API `Index` of the first and second controller of the last controller refresh: which controller the
    parents 1 and 2 of the controller tables are. */
extern int32_t ctlrIndexFirst;
extern int32_t ctlrIndexSecond;

/**
 * Fetches the list of an object and merges it into the table whose first column is col_id. In background
 * mode it only fetches, into the hand-over of backgroundUpdate.h. 0, otherwise non-zero.
 */
int get_table_info(int col_id, const char* apiName, int map_size, const attribute_map_entry* map,
                   bool background);

/** Merges a response. 0 or 1; a failure before the merge leaves the store as it was. */
int process_table_info(int col_id, const char* apiName, int map_size, const attribute_map_entry* map,
                       const table_response& response);
