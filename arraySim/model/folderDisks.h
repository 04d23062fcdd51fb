#pragma once

#include <cstdint>

#include "arraySim/model/model.h"

namespace arraysim {

/** Sums over the disks of a folder; sizes in blocks. */
struct FolderSums {
    int64_t total = 0;  ///< without the spares
    int64_t spare = 0;
    uint32_t disks = 0;
    uint32_t spares = 0;
};

FolderSums SumsOf(const Model& model, const Object& folder);

/** Stores the numbers of disks in the folder. */
void ShowDiskCounts(Object& folder, const FolderSums& sums);

/** Moves a disk to a folder, or to none (null), and updates both folders and their storage usage. */
void MoveDisk(Model& model, Object& disk, Object* folder);

}  // namespace arraysim
