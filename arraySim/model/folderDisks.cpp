#include "arraySim/model/folderDisks.h"

#include <algorithm>
#include <cstdlib>
#include <string>

#include "apiMgmt/common/utils/stringUtil.h"
#include "arraySim/model/failures.h"

namespace arraysim {

namespace {

int64_t BlocksIn(const Object& object, const char* attribute) {
    return std::atoll(std::string(object.Text(attribute)).c_str());
}

/** Keeps the used space, unless it exceeds the new total. */
void ShowUsage(Object& usage, const FolderSums& sums) {
    const int64_t used = std::min(BlocksIn(usage, "UsedSpace"), sums.total);
    usage.Put("TotalSpace", std::to_string(sums.total));
    usage.Put("UsedSpace", std::to_string(used));
    usage.Put("AllocatedSpace",
              std::to_string(std::clamp(BlocksIn(usage, "AllocatedSpace"), used, sums.total)));
    usage.Put("FreeSpace", std::to_string(sums.total - used));
    usage.Put("SpareSpace", std::to_string(sums.spare));
}

void Follow(Model& model, Object& folder) {
    const FolderSums sums = SumsOf(model, folder);
    ShowDiskCounts(folder, sums);
    folder.Put("OkToDelete", sums.disks == 0 ? "True" : "False");
    if (Object* usage = model.Find(*model.catalogue().Find("TsDiskFolderStorageUsage"), folder.index)) {
        ShowUsage(*usage, sums);
    }
    UpdateFromDisks(model, folder);
}

}  // namespace

FolderSums SumsOf(const Model& model, const Object& folder) {
    FolderSums sums;
    for (const Object& disk : model.Objects(*model.catalogue().KindOf("TsDisk").list)) {
        if (disk.Number("DiskFolderIndex") == folder.index) {
            const bool is_spare = disk.Text("Spare") == "True";
            (is_spare ? sums.spare : sums.total) += BlocksIn(disk, "Size");
            ++sums.disks;
            sums.spares += is_spare ? 1 : 0;
        }
    }
    return sums;
}

void ShowDiskCounts(Object& folder, const FolderSums& sums) {
    folder.Put("DiskCount", std::to_string(sums.disks));
    folder.Put("ManagedCount", std::to_string(sums.disks - sums.spares));
    folder.Put("SpareCount", std::to_string(sums.spares));
}

void MoveDisk(Model& model, Object& disk, Object* folder) {
    Object* old_folder = model.Find(*model.catalogue().Find("TsDiskFolder"), disk.Number("DiskFolderIndex"));
    disk.Put("DiskFolder", folder == nullptr ? "" : folder->GetInstanceText());
    disk.Put("DiskFolderIndex", std::to_string(folder == nullptr ? 0 : folder->index));
    disk.Put("Managed", folder == nullptr ? "False" : "True");
    disk.Put("ControlType", folder == nullptr ? "Unmanaged" : "Managed");
    disk.Put("UnassignedReason", folder == nullptr ? "UnassignedByUser" : "AlreadyAssigned");
    disk.Put("Spare", "False");
    for (Object* each : {old_folder, folder}) {
        if (each != nullptr) {
            Follow(model, *each);
        }
    }
}

}  // namespace arraysim
