#include <iterator>

#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/apiAccess.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/postProcess.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/storageUnits.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

// The table tsFolderUsage has no refresh of its own: each disk folder's row is fetched when the refresh of
// the folders has written the folder's API index.

namespace {

constexpr const char* kUsageObject = "tsDiskFolderStorageUsage";

struct usage_column {
    int col_id;
    const char* attribute;
};

// In the order in which they are read; the first one fetches the object for all.
constexpr usage_column kUsageColumns[] = {
    {COLID_tsFolderUsageTotalGb, "TotalSpace"},          {COLID_tsFolderUsageUsedGb, "UsedSpace"},
    {COLID_tsFolderUsageTotalGib, "TotalSpace"},         {COLID_tsFolderUsageUsedGib, "UsedSpace"},
    {COLID_tsFolderUsageAllocatedGib, "AllocatedSpace"}, {COLID_tsFolderUsageFreeGib, "FreeSpace"},
    {COLID_tsFolderUsageSpareGib, "SpareSpace"},
};

// Folders that hold no storage of their own.
bool has_no_usage(uint32_t api_index) {
    return api_index == 1 || api_index == 69696969;
}

int32_t row_of(int col_id, int32_t row) {
    return cols[col_id].first_var + row - 1;
}

void store_unsigned(int col_id, int32_t row, uint32_t number) {
    store_number(row_of(col_id, row), number);
}

void store_blocks(int col_id, int32_t row, uint64_t blocks_per_unit) {
    const uint64_t blocks = ParseUnsigned(vars[row_of(col_id, row)].str);
    store_unsigned(col_id, row, as_number_column(blocks / blocks_per_unit));
}

void store_row_number(int32_t row) {
    const column_record& numbers = cols[COLID_tsFolderUsageNbr];
    store_unsigned(COLID_tsFolderUsageNbr, row, static_cast<uint32_t>(row));
    clear_cached_range(numbers.first_var + row,
                       numbers.first_var + static_cast<int32_t>(numbers.maxNumOfRows));
}

// The fetch writes block counts into the numbers of the row, which a manager must not see: they are put back,
// and only a complete fetch replaces them.
class kept_numbers {
  public:
    explicit kept_numbers(int32_t row) : row_(row) {
        for (size_t i = 0; i < std::size(kUsageColumns); ++i)
            numbers_[i] = vars[row_of(kUsageColumns[i].col_id, row)].uint;
    }
    ~kept_numbers() {
        for (size_t i = 0; i < std::size(kUsageColumns); ++i)
            vars[row_of(kUsageColumns[i].col_id, row_)].uint = numbers_[i];
    }
    kept_numbers(const kept_numbers&) = delete;
    kept_numbers& operator=(const kept_numbers&) = delete;

  private:
    int32_t row_;
    uint32_t numbers_[std::size(kUsageColumns)];
};

bool fetch_usage(int32_t row, uint32_t api_index) {
    const kept_numbers numbers(row);
    bool is_fetched = false;
    for (const usage_column& column : kUsageColumns) {
        if (GetSingleInstance(kUsageObject, static_cast<int>(api_index), column.attribute,
                              row_of(column.col_id, row), is_fetched) != 0)
            return false;
        is_fetched = true;
    }
    return true;
}

uint32_t free_percent(int32_t row) {
    const int64_t total = vars[row_of(COLID_tsFolderUsageTotalGb, row)].uint;
    const int64_t used = vars[row_of(COLID_tsFolderUsageUsedGb, row)].uint;
    return total < 1 || used > total ? 0 : static_cast<uint32_t>((total - used) * 100 / total);
}

}  // namespace

void tsDiskFolderApiIndex_post_process(int32_t var_index) {
    const int32_t row = get_row_seq(var_index);
    const int32_t index_var = row_of(COLID_tsDiskFolderApiIndex, row);
    if (!is_cached(index_var)) {
        SUBAGENT_LOG(7, "disk-folder info is not cached, so we can't get associated storage-usage info\n");
        return;
    }
    const uint32_t api_index = vars[index_var].uint;
    store_row_number(row);
    for (const usage_column& column : kUsageColumns)
        vars[row_of(column.col_id, row)].str = "0";
    if (!has_no_usage(api_index) && !fetch_usage(row, api_index))
        return;

    store_blocks(COLID_tsFolderUsageTotalGb, row, kBlocksPerGb);
    store_blocks(COLID_tsFolderUsageUsedGb, row, kBlocksPerGb);
    store_unsigned(COLID_tsDiskFolderFreePercent, row, free_percent(row));
    for (const int col_id :
         {COLID_tsFolderUsageTotalGib, COLID_tsFolderUsageUsedGib, COLID_tsFolderUsageAllocatedGib,
          COLID_tsFolderUsageFreeGib, COLID_tsFolderUsageSpareGib})
        store_blocks(col_id, row, kBlocksPerGib);
    store_unsigned(COLID_tsDiskFolderFreeGib, row, vars[row_of(COLID_tsFolderUsageFreeGib, row)].uint);
}
