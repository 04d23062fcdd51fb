"""python3 -m arraySim.generator --mib DIRECTORY --objects FILE --out DIRECTORY: writes the data of the simulated array."""

import argparse
import os
import sys

from apiMgmt.common.generator import output, reader
from apiMgmt.common.generator.output import c_string
from apiMgmt.snmpSubagent.snmpSubagentMibParser.generator import model, traps

SOURCE = """\
// Made from columns.def, refresh.def and traps.def of the daemon, and from objects.def.
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

# The daemon fills this table with code of its own (folderUsage.cpp), so no line of refresh.def names the object.
FOLDER_USAGE = ("tsFolderUsage", "TsDiskFolderStorageUsage",
                ("TotalSpace", "UsedSpace", "AllocatedSpace", "FreeSpace", "SpareSpace"))

PARENT = {"none": "kNone", "controller": "kController", "enclosure": "kEnclosure"}
GOOD_VALUE = {"tsstatus_enum": "Up", "truth_value": "True"}

# How the daemon finds a row by an argument of a trap command, and what the array has to put there.
SOURCE_OF_FIND = {"index": "kIndex", "bounded-index": "kIndex", "controller": "kIndex", "next-index": "kIndexBefore",
                  "row": "kRow"}
PARENT_SOURCE_OF_FIND = {"index": "kParentIndex", "row": "kParentRow"}


def number(value):
    return f"{{Source::kNumber, {value}}}"


def render_event(name, state, trap, event_id, arguments):
    entry = next(e for e in state.status.table.refresh.entries if e.column is state.status)
    return (f"constexpr EventRule kEventOf{name} = {{{trap}, {{{', '.join(event_id.split())}}}, "
            f"{{{', '.join(arguments)}}}, {c_string(entry.attribute)}, {c_string(GOOD_VALUE[entry.post_process])}}};")


def render_event_of(name, table, catalogue):
    """The event that reports a change of the table's objects; None if there is none."""
    for force in catalogue.forces:
        notification = catalogue.notification(force.trap)
        if force.component:
            state = catalogue.component(force.trap, force.component).state
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
    """The API object that fills a table, and the attributes that the daemon reads."""
    if table.name == FOLDER_USAGE[0]:
        return FOLDER_USAGE[1:]
    name = table.refresh.object_name
    return name[0].upper() + name[1:], dict.fromkeys(entry.attribute for entry in table.refresh.entries)


def render(mib, catalogue, objects):
    constants, tables = [], []
    for table in mib.tables:
        name, attributes = read_of(table)
        constants.append(f"constexpr std::string_view kReadOf{name}[] = {{{', '.join(map(c_string, attributes))}}};")
        event = render_event_of(name, table, catalogue)
        if event:
            constants.append(event)
        tables.append(f"    {{{c_string(name)}, TableParent::{PARENT[table.parent]}, {max(table.parents, 1)}, {table.rows}, "
                      f"kReadOf{name}, {f'&kEventOf{name}' if event else 'nullptr'}}},")
    return SOURCE.format(constants="\n".join(constants), tables="\n".join(tables), objects=objects)


def main():
    parser = argparse.ArgumentParser(prog="generator", description=__doc__)
    parser.add_argument("--mib", required=True, help="directory of columns.def, refresh.def and traps.def")
    parser.add_argument("--objects", required=True, help="objects.def")
    parser.add_argument("--out", required=True, help="directory for the source file")
    arguments = parser.parse_args()

    def lines(name):
        return reader.read_lines(os.path.join(arguments.mib, name))

    try:
        mib = model.build(lines("columns.def"), lines("refresh.def"))
        catalogue = traps.build(mib, lines("traps.def"))
        with open(arguments.objects, encoding="utf-8") as file:
            objects = file.read()
    except (reader.DataError, OSError) as error:
        print(error, file=sys.stderr)
        return 1
    output.write_files(arguments.out, (("modelData.cpp", render(mib, catalogue, objects)),))
    return 0


if __name__ == "__main__":
    sys.exit(main())
