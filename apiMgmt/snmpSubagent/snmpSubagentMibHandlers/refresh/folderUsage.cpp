#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/folderUsage.h"

#include <array>
#include <optional>
#include <string>

#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/postProcess.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

namespace {

constexpr const char* kUsageObject = "tsDiskFolderStorageUsage";
constexpr const char* kFirstAttribute = "TotalSpace";

const std::vector<api_response>* usages_of_merge = nullptr;

// Usage of one folder, in blocks of 512 octets.
struct folder_usage {
    uint64_t total = 0, used = 0, allocated = 0, free = 0, spare = 0;
};

// Folders without storage.
bool has_no_usage(uint32_t api_index) {
    return api_index == 1 || api_index == 69696969;
}

uint32_t folder_index(const parser::XMLElement& index) {
    return number_from_text(index.GetText(), cols[COLID_tsDiskFolderApiIndex].data_type);
}

int32_t row_of(int col_id, int32_t row) {
    return cols[col_id].first_var + row - 1;
}

void store_unsigned(int col_id, int32_t row, uint64_t number) {
    store_number(row_of(col_id, row), as_number_column(number));
}

// Clears the rows after the folder's, because the free space of a removed folder would keep an alert firing.
void clear_rows_after(int32_t row) {
    for (const int col_id :
         {COLID_tsFolderUsageNbr, COLID_tsDiskFolderFreePercent, COLID_tsDiskFolderFreeGib}) {
        const column_record& column = cols[col_id];
        clear_cached_range(column.first_var + row,
                           column.first_var + static_cast<int32_t>(column.maxNumOfRows));
    }
}

// Returns nothing, after logging the reason, unless all numbers are present. The row then keeps its values.
std::optional<folder_usage> read_usage(const api_response& response) {
    const parser::XMLElement object = object_in_response(response, kUsageObject, kFirstAttribute);
    if (!object)
        return std::nullopt;
    folder_usage usage;
    const struct {
        const char* attribute;
        uint64_t* blocks;
    } numbers[] = {{kFirstAttribute, &usage.total},
                   {"UsedSpace", &usage.used},
                   {"AllocatedSpace", &usage.allocated},
                   {"FreeSpace", &usage.free},
                   {"SpareSpace", &usage.spare}};
    for (const auto& number : numbers) {
        const parser::XMLElement attribute = object.GetFirstChildByTagName(number.attribute);
        if (!attribute) {
            SUBAGENT_LOG(debug, "specified attr not found: iAttrName: %s\n", number.attribute);
            return std::nullopt;
        }
        *number.blocks = ParseUnsigned(attribute.GetElementContent());
    }
    return usage;
}

uint64_t free_percent(uint64_t total, uint64_t used) {
    return total < 1 || used > total ? 0 : (total - used) * 100 / total;
}

void store_usage(int32_t row, const folder_usage& usage) {
    const uint32_t total_gb = as_number_column(usage.total / kBlocksPerGb);
    const uint32_t used_gb = as_number_column(usage.used / kBlocksPerGb);
    store_unsigned(COLID_tsFolderUsageTotalGb, row, total_gb);
    store_unsigned(COLID_tsFolderUsageUsedGb, row, used_gb);
    store_unsigned(COLID_tsDiskFolderFreePercent, row, free_percent(total_gb, used_gb));
    store_unsigned(COLID_tsFolderUsageTotalGib, row, usage.total / kBlocksPerGib);
    store_unsigned(COLID_tsFolderUsageUsedGib, row, usage.used / kBlocksPerGib);
    store_unsigned(COLID_tsFolderUsageAllocatedGib, row, usage.allocated / kBlocksPerGib);
    store_unsigned(COLID_tsFolderUsageFreeGib, row, usage.free / kBlocksPerGib);
    store_unsigned(COLID_tsFolderUsageSpareGib, row, usage.spare / kBlocksPerGib);
    store_unsigned(COLID_tsDiskFolderFreeGib, row, usage.free / kBlocksPerGib);
}

}  // namespace

std::vector<api_response> fetch_folder_usages(const parser::XMLParser& folders) {
    std::vector<api_response> usages;
    const parser::XMLElement root = folders.GetDocumentElement();
    if (!root ||
        root.GetFirstChildByTagName("ApiMethodReturn").GetFirstChildByTagName("Successful").GetText() !=
            "True")
        return usages;
    const std::vector<parser::XMLElement> objects =
        object_elements(root.GetFirstChildByTagName("ReturnObjectArray"), std::string(kDiskFolderObject));
    if (objects.size() > cols[COLID_tsDiskFolderNbr].maxNumOfRows)
        return usages;  // the merge rejects them
    for (const parser::XMLElement& folder : objects) {
        const parser::XMLElement index = folder.GetFirstChildByTagName("Index");
        api_response& usage = usages.emplace_back();
        if (!index || has_no_usage(folder_index(index)))
            continue;
        usage = fetch_response(kUsageObject, static_cast<int>(folder_index(index)));
        if (usage.result != 0)
            break;
    }
    return usages;
}

folder_usages_of_merge::folder_usages_of_merge(const std::vector<api_response>& usages) {
    usages_of_merge = &usages;
}

folder_usages_of_merge::~folder_usages_of_merge() {
    usages_of_merge = nullptr;
}

void tsDiskFolderApiIndex_post_process(int32_t var_index) {
    static const api_response not_fetched;
    const int32_t row = get_row_seq(var_index);
    const int32_t index_var = row_of(COLID_tsDiskFolderApiIndex, row);
    if (!is_cached(index_var)) {
        SUBAGENT_LOG(debug,
                     "disk-folder info is not cached, so we can't get associated storage-usage info\n");
        return;
    }
    store_unsigned(COLID_tsFolderUsageNbr, row, static_cast<uint32_t>(row));
    clear_rows_after(row);
    if (has_no_usage(vars[index_var].uint)) {
        store_usage(row, {});
        return;
    }
    const auto place = static_cast<size_t>(row) - 1;
    const bool is_fetched = usages_of_merge != nullptr && place < usages_of_merge->size();
    if (const auto usage = read_usage(is_fetched ? (*usages_of_merge)[place] : not_fetched))
        store_usage(row, *usage);
}
