#pragma once

#include <cstdint>

#include "arraySim/model/model.h"

namespace arraysim {

/** What the disks of a folder come to; sizes in blocks. */
struct FolderSums {
    int64_t total = 0;  ///< without the spares
    int64_t spare = 0;
    uint32_t disks = 0;
    uint32_t spares = 0;
};

FolderSums SumsOf(const Model& model, const Object& folder);

/** Writes the numbers of disks into the folder. */
void ShowDiskCounts(Object& folder, const FolderSums& sums);

/** Puts a disk into a folder, or into none; both folders and their storage usage follow. */
void MoveDisk(Model& model, Object& disk, Object* folder);

}  // namespace arraysim
