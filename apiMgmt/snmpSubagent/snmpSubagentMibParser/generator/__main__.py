"""python3 -m generator --columns FILE --refresh FILE --traps FILE --out DIR: writes the tables of the MIB store."""

import argparse
import sys

from apiMgmt.common.generator import output, reader

from . import model, render, renderTraps, traps


def main():
    parser = argparse.ArgumentParser(prog="generator", description=__doc__)
    parser.add_argument("--columns", required=True, help="columns.def")
    parser.add_argument("--refresh", required=True, help="refresh.def")
    parser.add_argument("--traps", required=True, help="traps.def")
    parser.add_argument("--out", required=True, help="folder for what is made")
    arguments = parser.parse_args()
    try:
        mib = model.build(reader.read_lines(arguments.columns), reader.read_lines(arguments.refresh))
        catalogue = traps.build(mib, reader.read_lines(arguments.traps))
    except (reader.DataError, OSError) as error:
        print(error, file=sys.stderr)
        return 1
    output.write_files(arguments.out, (
        ("mibColumns.h", render.render_header(mib)),
        ("mibColumns.cpp", render.render_source(mib)),
        ("trapCatalogue.cpp", renderTraps.render_catalogue(catalogue)),
        ("forceTrapHandlers.h", renderTraps.render_handlers_header(catalogue)),
        ("forceTrapHandlers.cpp", renderTraps.render_handlers(catalogue))))
    return 0


if __name__ == "__main__":
    sys.exit(main())
