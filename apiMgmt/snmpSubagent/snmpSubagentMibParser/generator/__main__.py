"""python3 -m generator --columns FILE --refresh FILE --out DIR: writes mibColumns.h and mibColumns.cpp."""

import argparse
import os
import sys

from . import model, reader, render


def write_if_changed(path, text):
    """Leaves an equal file untouched, so that nothing is compiled again without need."""
    try:
        with open(path, encoding="utf-8") as file:
            if file.read() == text:
                return
    except FileNotFoundError:
        pass
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)


def main():
    parser = argparse.ArgumentParser(prog="generator", description=__doc__)
    parser.add_argument("--columns", required=True, help="columns.def")
    parser.add_argument("--refresh", required=True, help="refresh.def")
    parser.add_argument("--out", required=True, help="folder for the two files")
    arguments = parser.parse_args()
    try:
        mib = model.build(reader.read_lines(arguments.columns), reader.read_lines(arguments.refresh))
    except (reader.DataError, OSError) as error:
        print(error, file=sys.stderr)
        return 1
    os.makedirs(arguments.out, exist_ok=True)
    write_if_changed(os.path.join(arguments.out, "mibColumns.h"), render.render_header(mib))
    write_if_changed(os.path.join(arguments.out, "mibColumns.cpp"), render.render_source(mib))
    return 0


if __name__ == "__main__":
    sys.exit(main())
