#pragma once

#include <cstdint>
#include <span>
#include <string_view>

/**
 * The data compiled into the simulator: data/array/objects.def, and the facts about API objects from
 * data/mib. codegen generates the definitions.
 */

namespace arraysim {

/** One argument of a trap command: a constant, or a number of the object that the command is about. */
struct EventArgument {
    enum class Source {
        kNumber,
        kIndex,        ///< its API index
        kIndexBefore,  ///< its API index minus 1
        kRow,          ///< its row in the daemon's table, among those of its parent if it has one; from 1
        kParentIndex,  ///< API index of its controller or enclosure
        kParentRow
    };

    Source source = Source::kNumber;
    int32_t number = 0;
};

/** How the array reports a change of an object's state. */
struct EventRule {
    int32_t trap;
    int32_t id[3];
    EventArgument arguments[3];  ///< A, B, C
    std::string_view attribute;  ///< whose changes are reported
    std::string_view good;       ///< its value that clears the report
};

enum class TableParent { kNone, kController, kEnclosure };

/** A table of the daemon that a GetList fills. */
struct DaemonTable {
    std::string_view object;  ///< of the GetList: a kind of object, or a list of several kinds
    TableParent parent;
    uint32_t parents;                              ///< 1 for a table without parents
    uint32_t rows;                                 ///< per parent
    std::span<const std::string_view> attributes;  ///< those that the daemon reads
    const EventRule* event;                        ///< null: changes are not reported

    size_t Capacity() const { return size_t{parents} * rows; }
};

extern const std::span<const DaemonTable> kDaemonTables;

/** The contents of data/array/objects.def. */
extern const std::string_view kObjectsDef;

}  // namespace arraysim
