"""Writes the tables of the enumerations.

Run from the root of the sources: python3 -m apiMgmt.apiStub.apiSdk.objects.tessera.enumerationGenerator
"""

import argparse
import sys

from apiMgmt.common.generator import output, reader

from . import model, render


def main():
    parser = argparse.ArgumentParser(prog="enumerationGenerator", description=__doc__)
    parser.add_argument("--data", required=True, help="folder of the data files")
    parser.add_argument("--out", required=True, help="folder for what is made")
    arguments = parser.parse_args()
    try:
        tables = model.read_folder(arguments.data)
    except (reader.DataError, OSError) as error:
        print(error, file=sys.stderr)
        return 1
    output.write_files(arguments.out, (
        ("apiEnumsIDStrList.h", render.render_header(tables)),
        ("apiEnumsIDStrList.cpp", render.render_source(tables))))
    return 0


if __name__ == "__main__":
    sys.exit(main())
