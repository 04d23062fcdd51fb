#pragma once

#include <cstddef>
#include <cstdint>

#include "arraySim/model/incidents.h"

namespace arraysim {

/** What the presets have in common besides their sizes. */

// Every so manieth volume, server and folder has a name that a careless reader of documents trips over.
inline constexpr uint32_t kAwkwardEvery = 23;
inline constexpr uint32_t kAwkwardFirst = 2;
inline constexpr const char* kAwkwardNames[] = {
    "Größe & Übung", "logs <old> & <new>", "\"quoted\" and 'quoted'", "北館-R&D", "naïve; façade > Ωmega"};

// The folders of every array begin with these indexes: 1 and 69696969 have no storage usage of their own.
inline constexpr uint32_t kFolderIndexes[] = {3, 1, 6, 69696969};

inline constexpr uint32_t kDisksPerSpare = 24;

/** An object that is not well in every preset that has it. */
struct Ailment {
    const char* list;
    size_t row;
    Condition condition;
};
inline constexpr Ailment kAilments[] = {
    {"TsDisk", 7, Condition::kDown},
    {"TsDisk", 40, Condition::kDegraded},
    {"TsControllerFanSensor", 2, Condition::kDegraded},
    {"TsEnclosureCoolingFanSensor", 3, Condition::kDegraded},
    {"TsVolume", 5, Condition::kDegraded},
    {"TsServer", 4, Condition::kDegraded},
    {"TsServer", 17, Condition::kDown},
    {"TsUps", 2, Condition::kDegraded},
};

/** Alerts of the past. */
struct PastAlert {
    const char* definition;
    const char* status;
    const char* category;
    const char* message;
};
inline constexpr PastAlert kPastAlerts[] = {
    {"User logged in", "Inform", "System", "operator logged in from 192.0.2.77"},
    {"Freezepoint created", "Complete", "Storage", "Freezepoint of volume 'vol-0001' was created"},
    {"Disk Degraded", "Degraded", "Disk", "Disk '02-02' predicts its failure"},
    {"Server Degraded", "Degraded", "Connectivity", "Server 'host-001' lost a path & found it again"},
    {"Volume expanded", "Complete", "Storage", "Volume \"vol-0002\" grew by < 100 GB"},
    {"Enclosure fan Down", "Down", "Hardware", "Enclosure fan 'Enclosure 1 Fan 1' is down"},
    {"Free space is low", "Critical", "Storage", "Folder 1 has less than 15 % free space"},
    {"Clock was set", "Inform", "System", "The clock was set back by 2 s"},
};

}  // namespace arraysim
