"""python3 -m mib.generator --data FOLDER --out FOLDER: writes the MIB modules and the page for people."""

import argparse
import os
import sys

from apiMgmt.common.generator import output, reader
from apiMgmt.snmpSubagent.snmpSubagentMibParser.generator import model, traps

from . import checks, descriptions, names, renderReference, renderRows
from .renderModule import Renderer


def build(folder):
    """What the data folder of the MIB store holds, checked; raises DataError."""
    def lines(name):
        return reader.read_lines(os.path.join(folder, name))

    mib = model.build(lines("columns.def"), lines("refresh.def"))
    catalogue = traps.build(mib, lines("traps.def"))
    found = descriptions.read(descriptions.read_folder(os.path.join(folder, "descriptions")))
    checks.check(mib, catalogue, found)
    names.check(mib, catalogue, found)
    return Renderer(mib, catalogue, found)


def main():
    parser = argparse.ArgumentParser(prog="generator", description=__doc__)
    parser.add_argument("--data", required=True, help="folder of columns.def, refresh.def, traps.def, descriptions")
    parser.add_argument("--out", required=True, help="folder for what is made")
    arguments = parser.parse_args()
    try:
        renderer = build(arguments.data)
    except (reader.DataError, OSError) as error:
        print(error, file=sys.stderr)
        return 1
    output.write_files(arguments.out, (
        (renderer.found.module.name + ".txt", renderer.module()),
        (renderer.found.older.name + ".txt", renderer.older_module()),
        ("mib-reference.md", renderReference.Reference(renderer).page()),
        ("conventionRows.inc", renderRows.render(renderer.found))))
    return 0


if __name__ == "__main__":
    sys.exit(main())
