#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/apiAccess.h"

/**
 * The table tsFolderUsage is refreshed together with the disk folders. The usage of each folder is fetched
 * right after their list, on the same thread, and merged with it.
 */

inline constexpr std::string_view kDiskFolderObject = "tsDiskFolder";

/**
 * Fetches the usage of each folder in the list, in the same order. The response is empty for a folder without
 * storage. Stops after a failed exchange. Main thread and GetList task.
 */
std::vector<api_response> fetch_folder_usages(const parser::XMLParser& folders);

/** Fills the folder's row of tsFolderUsage and its free space. `var_index` is the folder's index variable. */
void tsDiskFolderApiIndex_post_process(int32_t var_index);

/** Passes the usages to tsDiskFolderApiIndex_post_process during a merge. Main thread only. */
class folder_usages_of_merge {
  public:
    explicit folder_usages_of_merge(const std::vector<api_response>& usages);
    ~folder_usages_of_merge();
    folder_usages_of_merge(const folder_usages_of_merge&) = delete;
    folder_usages_of_merge& operator=(const folder_usages_of_merge&) = delete;
};
