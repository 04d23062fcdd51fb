#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/apiAccess.h"

/**
 * The table tsFolderUsage has no refresh of its own: its rows come with the refresh of the disk folders. The
 * usage of each folder is fetched right after their list, on whichever thread fetches that, and merged with
 * it.
 */

inline constexpr std::string_view kDiskFolderObject = "tsDiskFolder";

/** Fetches the usage of each folder of a list, in its order; one without usage of its own gets an empty
   response. After a failed exchange nothing more is asked. Main thread and GetList task. */
std::vector<api_response> fetch_folder_usages(const parser::XMLParser& folders);

/** Fills the folder's row of tsFolderUsage and its free space. Takes the index of the written variable. */
void tsDiskFolderApiIndex_post_process(int32_t var_index);

/** Lends the usages to tsDiskFolderApiIndex_post_process for the time of a merge. Main thread only. */
class folder_usages_of_merge {
  public:
    explicit folder_usages_of_merge(const std::vector<api_response>& usages);
    ~folder_usages_of_merge();
    folder_usages_of_merge(const folder_usages_of_merge&) = delete;
    folder_usages_of_merge& operator=(const folder_usages_of_merge&) = delete;
};
