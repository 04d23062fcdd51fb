#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/tableRefresh.h"

#include <utility>

#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/backgroundUpdate.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/apiAccess.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/columnMerge.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/elementTable.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

int32_t ctlrIndexFirst = 0;
int32_t ctlrIndexSecond = 0;

table_response::table_response(std::string text) : xml(std::move(text)) {
    document.ParseXMLString(xml);
}

namespace {

using element_list = std::vector<parser::XMLElement>;

int fetch_table(const char* apiName, table_response& response) {
    std::string xml;
    const int result = AccessApi(apiName, xml, kAllObjects, "", "");
    if (result != 0) {
        SUBAGENT_LOG(4, "failed to get xml response for apiName: %s, retVal: %d\n", apiName, result);
        return result;
    }
    response = table_response(std::move(xml));
    if (apiName == kDiskFolderObject)
        response.folder_usages = fetch_folder_usages(response.document);
    return 0;
}

// Which controllers the parents 1 and 2 are. With one controller the second index keeps its value.
int note_controller_indexes(const element_list& controllers, const char* apiName) {
    const parser::XMLElement first = controllers[0].GetFirstChildByTagName("Index");
    if (!first) {
        SUBAGENT_LOG(
            4,
            "tsController does not contain 'Index' for 1st ctlr: in contents of temp_elem: %s, apiName: %s\n",
            controllers[0].GetElementContent().c_str(), apiName);
        return 1;
    }
    ctlrIndexFirst = ParseInt(first.GetText());
    if (controllers.size() != 2)
        return 0;
    const parser::XMLElement second = controllers[1].GetFirstChildByTagName("Index");
    if (!second) {
        SUBAGENT_LOG(4, "tsController does not contain 'Index' for 2nd ctlr: in contents of temp_elem: %s\n",
                     controllers[1].GetElementContent().c_str());
        return 1;
    }
    ctlrIndexSecond = ParseInt(second.GetText());
    return 0;
}

int merge_columns(int col_id, int map_size, const attribute_map_entry* map, const element_table& elements) {
    int place = kRowColumn;
    int target = col_id;
    int result = get_col_info(target, cols[target].first_var, elements, kRowColumn, nullptr);
    while (result == 0 && ++place < map_size) {
        target = static_cast<int>(map[place].col_id);
        result = get_col_info(target, cols[target].first_var, elements, place, map[place].post_process);
    }
    if (result != 0)
        SUBAGENT_LOG(7,
                     "found error: index_to_sot: %d, col-id: %d, index_of_var_of_argv: %d, argv-col-id: %d\n",
                     cols[col_id].head_var, col_id, cols[target].first_var, target);
    return result;
}

}  // namespace

int get_table_info(int col_id, const char* apiName, int map_size, const attribute_map_entry* map,
                   bool background) {
    if (background) {
        park_fetch_arguments(apiName, map_size, map);
        return fetch_table(apiName, bgUpdateResponse);
    }
    table_response response;
    const int result = fetch_table(apiName, response);
    return result != 0 ? result : process_table_info(col_id, apiName, map_size, map, response);
}

int process_table_info(int col_id, const char* apiName, int map_size, const attribute_map_entry* map,
                       const table_response& response) {
    const parser::XMLElement root = response.document.GetDocumentElement();
    if (!root) {
        SUBAGENT_LOG(4, "error found while trying to parse ipXmlString: %s\n", response.xml.c_str());
        return 1;
    }
    if (check_xml_resp(apiName, root) != 0)
        return 1;
    element_list objects;
    if (const parser::XMLElement list = root.GetFirstChildByTagName("ReturnObjectArray"))
        objects = object_elements(list, apiName);

    const bool is_controllers = apiName == std::string_view("tsController");
    if (is_controllers && !objects.empty() && note_controller_indexes(objects, apiName) != 0)
        return 1;
    if (objects.size() < cols[col_id].minNumOfRows) {
        SUBAGENT_LOG(7, "number_of_elems_of_interest (%d) is less than %d, apiName: %s\n",
                     static_cast<int>(objects.size()), static_cast<int>(cols[col_id].minNumOfRows), apiName);
        SUBAGENT_LOG(7, "*ipXmlString: %s", response.xml.c_str());
        return 1;
    }
    const folder_usages_of_merge usages(response.folder_usages);
    return merge_columns(col_id, map_size, map,
                         element_table(response.document, objects, col_id, map_size, map));
}
