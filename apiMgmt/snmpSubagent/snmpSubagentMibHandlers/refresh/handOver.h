#pragma once

#include <atomic>
#include <string>
#include <vector>

#include "apiMgmt/common/xmlwrap/xmlParser.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/apiAccess.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibDefinition.h"

/**
 * The hand-over of a large table's response from the GetList task, which fetches it, to the main thread,
 * which merges it.
 */

/**
 * The responses of one refresh: the list and, for disk folders, the usage of each. Fetched and parsed on
 * either thread, checked and merged on the main thread.
 */
struct table_response {
    table_response() = default;
    table_response(std::string xml);

    std::string xml;
    parser::XMLParser document{nullptr};
    std::vector<api_response> folder_usages; /**< in the order of the list */
};

enum bg_update_state : int {
    BGUPDATE_STATE_idle = 0,
    BGUPDATE_STATE_getlist_requested = 1, /**< the GetList task must fetch bgUpdateTable */
    BGUPDATE_STATE_getlist_done = 2,      /**< the main thread must merge the response */
    BGUPDATE_STATE_error_on_getlist = 3,
};

/**
 * The handshake. Each state belongs to one thread, which owns the parked variables until it stores the next
 * state. Stored with release and read with acquire.
 */
extern std::atomic<int> bgUpdateState;

// ---- parked variables of the handshake ----
extern int bgUpdateTable;           /**< first column of the table; written by the main thread */
extern std::string bgUpdateApiName; /**< this and the next three are written by the GetList task */
extern int bgUpdateMapSize;
extern const attribute_map_entry* bgUpdateMap;
extern table_response bgUpdateResponse;

/** Stores what process_table_info needs later. GetList task. */
void park_fetch_arguments(const char* apiName, int map_size, const attribute_map_entry* map);
