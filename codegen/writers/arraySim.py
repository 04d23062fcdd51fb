"""Writes the data of the simulated array: facts from data/mib, and the contents of objects.def."""

from codegen.writers.output import c_string, notice

SOURCE = notice("data/mib and data/array/objects.def") + """\
#include "arraySim/model/modelData.h"

namespace arraysim {{

namespace {{

using Source = EventArgument::Source;

{constants}

constexpr DaemonTable kTables[] = {{
{tables}
}};

}}  // namespace

const std::span<const DaemonTable> kDaemonTables = kTables;

const std::string_view kObjectsDef = R"objects.def({objects})objects.def";

}}  // namespace arraysim
"""

# Hand-written code (folderUsage.cpp) fills this table, so no column names an attribute.
FOLDER_USAGE = ("tsFolderUsage", "TsDiskFolderStorageUsage",
                ("TotalSpace", "UsedSpace", "AllocatedSpace", "FreeSpace", "SpareSpace"))

PARENT = {"": "kNone", "controller": "kController", "enclosure": "kEnclosure"}
GOOD_VALUE = {"tsstatus_enum": "Up", "truth_value": "True"}

# The value that the array sends in an argument of a trap command, per rule by which the daemon finds the row.
SOURCE_OF_FIND = {"index": "kIndex", "bounded-index": "kIndex", "controller": "kIndex", "next-index": "kIndexBefore",
                  "row": "kRow"}
PARENT_SOURCE_OF_FIND = {"index": "kParentIndex", "row": "kParentRow"}


def number(value):
    return f"{{Source::kNumber, {value}}}"


def render_event(name, state, trap, event_id, arguments):
    entry = next(e for e in state.status.table.refresh.entries if e.column is state.status)
    return (f"constexpr EventRule kEventOf{name} = {{{trap}, {{{', '.join(event_id.split())}}}, "
            f"{{{', '.join(arguments)}}}, {c_string(entry.attribute)}, {c_string(GOOD_VALUE[entry.post_process])}}};")


def render_event_of(name, table, traps):
    """Returns the event that reports a change of the table's objects, or None."""
    for force in traps.forces:
        notification = traps.notification(force.trap)
        if force.component:
            state = traps.component(force.trap, force.component).state
            arguments = (f"{{Source::{PARENT_SOURCE_OF_FIND[notification.state.find]}, 0}}", number(force.component),
                         f"{{Source::{SOURCE_OF_FIND[state.find]}, 0}}")
        else:
            state = notification.state
            arguments = (number(1) if state.find == "one-or-two" else f"{{Source::{SOURCE_OF_FIND[state.find]}, 0}}",
                         number(0), number(0))
        if state.status.table is table:
            return render_event(name, state, force.trap, force.event_id, arguments)
    return None


def read_of(table):
    """Returns the API object that fills a table, and the attributes that the daemon reads."""
    if table.name == FOLDER_USAGE[0]:
        return FOLDER_USAGE[1:]
    name = table.refresh.object_name
    return name[0].upper() + name[1:], dict.fromkeys(entry.attribute for entry in table.refresh.entries)


def render(model, objects):
    """objects: the contents of objects.def."""
    constants, tables = [], []
    for table in model.mib.tables:
        name, attributes = read_of(table)
        constants.append(f"constexpr std::string_view kReadOf{name}[] = {{{', '.join(map(c_string, attributes))}}};")
        event = render_event_of(name, table, model.traps)
        if event:
            constants.append(event)
        tables.append(f"    {{{c_string(name)}, TableParent::{PARENT[table.parent_item]}, {max(table.parents, 1)}, "
                      f"{table.rows}, kReadOf{name}, {f'&kEventOf{name}' if event else 'nullptr'}}},")
    return SOURCE.format(constants="\n".join(constants), tables="\n".join(tables), objects=objects)
