#pragma once

#include <atomic>
#include <string>
#include <vector>

#include "apiMgmt/common/xmlwrap/xmlParser.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/apiAccess.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibDefinition.h"

/** The hand-over of a large table's response from the GetList task, which fetches it, to the main thread,
   which merges it. */

/** What a refresh has fetched: the list and, for disk folders, the usage of each. Judged and merged on the
   main thread, whichever thread has fetched and parsed it. */
struct table_response {
    table_response() = default;
    table_response(std::string xml);

    std::string xml;
    parser::XMLParser document{nullptr};
    std::vector<api_response> folder_usages; /**< in the order of the folders in the list */
};

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

/** get_table_info leaves here what process_table_info needs later. GetList task. */
void park_fetch_arguments(const char* apiName, int map_size, const attribute_map_entry* map);
