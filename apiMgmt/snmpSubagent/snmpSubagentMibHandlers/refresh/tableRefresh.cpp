#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/tableRefresh.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "apiMgmt/common/platform/clock.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/apiAccess.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/elementTable.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/folderUsage.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

namespace {

using element_list = std::vector<parser::XMLElement>;

int fetch_table(const char* apiName, table_response& response) {
    std::string xml;
    const int result = AccessApi(apiName, xml, kAllObjects, "", "");
    if (result != 0) {
        SUBAGENT_LOG(warning, "failed to get xml response for apiName: %s, retVal: %d\n", apiName, result);
        return result;
    }
    response = table_response(std::move(xml));
    if (apiName == kDiskFolderObject)
        response.folder_usages = fetch_folder_usages(response.document);
    return 0;
}

// Map position of the column that contains the row number instead of an attribute.
constexpr int kRowColumn = -1;

constexpr const char* kNoApiObject = "no api object";
constexpr uint32_t kNoApiObjectNumber = 666;

void store_row_number(int32_t var_index, int32_t row) {
    vars[var_index].uint = static_cast<uint32_t>(row);
    set_cached(var_index);
}

void store_missing_attribute(int32_t var_index, post_process_type post_process) {
    vars[var_index].str = kNoApiObject;
    if (post_process != nullptr)
        post_process(var_index);
    else
        vars[var_index].uint = kNoApiObjectNumber;
}

// Stores a string according to the column's type, converting it only if it has changed. Returns 0 or 1.
int store_attribute(int32_t var_index, uint32_t data_type, std::string_view text) {
    variable_entry& entry = vars[var_index];
    switch (data_type) {
        case SMI_BASETYPE_OCTET_STRING:
            if (text != entry.str)
                entry.str = text;
            return 0;
        case SMI_BASETYPE_INTEGER32:
        case SMI_BASETYPE_UNSIGNED32:
        case SMI_BASETYPE_ENUM:
        case SMI_BASETYPE_BITS:
            // A variable that was never filled also has an empty string, but no number yet.
            if (text != entry.str || text.empty()) {
                entry.str = text;
                entry.uint = number_from_text(text, data_type);
            }
            return 0;
        case SMI_BASETYPE_UNKNOWN:
            SUBAGENT_LOG(warning, "got SMI_BASETYPE_UNKNOWN\n");
            return 1;
        case SMI_BASETYPE_OBJECT_IDENTIFIER:
        case SMI_BASETYPE_INTEGER64:
        case SMI_BASETYPE_UNSIGNED64:
            SUBAGENT_LOG(warning, "col-id:%d, this data type is not yet handled: %d\n", entry.col_id,
                         static_cast<int>(data_type));
            return 1;
        default:
            SUBAGENT_LOG(warning, "temp_var_index:%d, can't process unknown header type: %d\n", var_index,
                         static_cast<int>(data_type));
            return 1;
    }
}

struct merge_of_column {
    int col_id;
    int32_t first_var;
    const element_table& elements;
    int map_place;
    post_process_type post_process;
};

// Guards against an inconsistent layout, because a wrong index in `vars` would damage another column.
bool is_own_variable(const merge_of_column& merge, int32_t var_index, uint32_t parent, int32_t row,
                     int32_t element) {
    if (var_index >= total_vars) {
        SUBAGENT_LOG(
            debug,
            "pointing past vars array holds: col_id:%d, index_to_soc:%d, parentIndex:%d, maxNumOfRows:%d, "
            "child_index:%d\n",
            merge.col_id, merge.first_var, static_cast<int>(parent),
            static_cast<int>(cols[merge.col_id].maxNumOfRows), row);
        return false;
    }
    if (vars[var_index].col_id != merge.col_id) {
        SUBAGENT_LOG(warning,
                     "more api elements than var table holds: col_id:%d, temp_var_index:%d, uu:%d, "
                     "vars[temp_var_index].col_id :%d\n",
                     merge.col_id, var_index, element, vars[var_index].col_id);
        return false;
    }
    return true;
}

int merge_variable(const merge_of_column& merge, int32_t var_index, int32_t row, int32_t element) {
    clear_cached(var_index);
    if (merge.map_place == kRowColumn) {
        store_row_number(var_index, row + 1);
        return 0;
    }
    const std::string_view text = merge.elements.value(element, merge.map_place);
    if (text.data() == nullptr) {
        store_missing_attribute(var_index, merge.post_process);
        return 0;
    }
    if (store_attribute(var_index, cols[merge.col_id].data_type, text) != 0)
        return 1;
    set_cached(var_index);
    if (merge.post_process != nullptr)
        merge.post_process(var_index);
    return 0;
}

int merge_parent(const merge_of_column& merge, uint32_t parent) {
    const auto rows = static_cast<int32_t>(cols[merge.col_id].maxNumOfRows);
    const auto first_of_parent = static_cast<int32_t>(merge.first_var + static_cast<int64_t>(parent) * rows);
    const std::vector<int32_t>& elements = merge.elements.rows_of_parent(parent);
    const auto used = static_cast<int32_t>(elements.size());
    for (int32_t row = 0; row < used; ++row) {
        const int32_t element = elements[static_cast<size_t>(row)];
        if (!is_own_variable(merge, first_of_parent + row, parent, row, element) ||
            merge_variable(merge, first_of_parent + row, row, element) != 0)
            return 1;
    }
    clear_cached_range(first_of_parent + used, first_of_parent + rows);
    return 0;
}

// A scalar has the value of the first object in the list.
int merge_scalar(const merge_of_column& merge) {
    if (merge.elements.element_count() == 0)
        return 0;
    return merge_variable(merge, merge.first_var, 0, 0);
}

// Merges one column. `map_place` is the position of its attribute in the map, or kRowColumn. Rows that the
// response no longer contains are not cached afterwards. Returns 0 or 1. After a failure, what was already
// merged remains.
int get_col_info(int col_id, int32_t first_var, const element_table& elements, int map_place,
                 post_process_type post_process) {
    const column_record& column = cols[col_id];
    const merge_of_column merge{col_id, first_var, elements, map_place, post_process};
    if (!column.is_table())
        return merge_scalar(merge);
    const uint32_t parents = std::max(column.maxNumOfParents, 1U);
    if (elements.element_count() > column.capacity()) {
        SUBAGENT_LOG(debug,
                     "too many elements received from api: col_id:%d, index_to_soc:%d, "
                     "number_of_elems_of_interest:%d, "
                     "temp_maxNumOfParents:%d, maxNumOfRows:%d\n",
                     col_id, first_var, elements.element_count(), static_cast<int>(parents),
                     static_cast<int>(column.maxNumOfRows));
        return 1;
    }
    for (uint32_t parent = 0; parent < parents; ++parent) {
        if (merge_parent(merge, parent) != 0)
            return 1;
    }
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
        SUBAGENT_LOG(debug,
                     "found error: index_to_sot: %d, col-id: %d, index_of_var_of_argv: %d, argv-col-id: %d\n",
                     cols[col_id].head_var, col_id, cols[target].first_var, target);
    return result;
}

int merge_table(int col_id, const char* apiName, int map_size, const attribute_map_entry* map,
                const table_response& response) {
    const parser::XMLElement root = response.document.GetDocumentElement();
    if (!root) {
        SUBAGENT_LOG(warning, "error found while trying to parse ipXmlString: %s\n", response.xml.c_str());
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
        SUBAGENT_LOG(debug, "number_of_elems_of_interest (%d) is less than %d, apiName: %s\n",
                     static_cast<int>(objects.size()), static_cast<int>(cols[col_id].minNumOfRows), apiName);
        SUBAGENT_LOG(debug, "*ipXmlString: %s", response.xml.c_str());
        return 1;
    }
    const folder_usages_of_merge usages(response.folder_usages);
    return merge_columns(col_id, map_size, map,
                         element_table(response.document, objects, col_id, map_size, map));
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
    if (result != 0) {
        note_failed_refresh(col_id);
        return result;
    }
    return process_table_info(col_id, apiName, map_size, map, response);
}

int process_table_info(int col_id, const char* apiName, int map_size, const attribute_map_entry* map,
                       const table_response& response) {
    const int result = merge_table(col_id, apiName, map_size, map, response);
    if (result != 0)
        note_failed_refresh(col_id);
    else
        cols[col_id].last_good_refresh_us = ClockNowUs();
    return result;
}

void note_failed_refresh(int col_id) {
    ++cols[col_id].failed_refreshes;
}
