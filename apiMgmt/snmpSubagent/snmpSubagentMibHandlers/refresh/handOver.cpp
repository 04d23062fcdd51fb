#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/handOver.h"

#include <utility>

std::atomic<int> bgUpdateState{BGUPDATE_STATE_idle};
int bgUpdateTable = 0;
std::string bgUpdateApiName;
int bgUpdateMapSize = 0;
const attribute_map_entry* bgUpdateMap = nullptr;
table_response bgUpdateResponse;

table_response::table_response(std::string text) : xml(std::move(text)) {
    document.ParseXMLString(xml);
}

void park_fetch_arguments(const char* apiName, int map_size, const attribute_map_entry* map) {
    bgUpdateApiName = apiName;
    bgUpdateMapSize = map_size;
    bgUpdateMap = map;
}
