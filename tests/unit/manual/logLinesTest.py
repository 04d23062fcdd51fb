"""Checks that the daemon writes the log lines that the administrators' guide explains.

Usage: logLinesTest.py GUIDE SOURCES
"""

import pathlib
import re
import sys


def explained_lines(guide):
    """Yields the strings in the first column of the table of log lines."""
    table = guide.split("| log line | meaning | action |\n", 1)[1].split("\n\n", 1)[0]
    for row in table.splitlines()[1:]:
        yield from re.findall(r"`([^`]+)`", row.split("|")[1])


def main(guide_path, sources):
    literals = "\n".join(literal for path in pathlib.Path(sources).rglob("*.cpp")
                         for literal in re.findall(r'"((?:[^"\\]|\\.)*)"', path.read_text(encoding="utf-8")))
    lines = list(explained_lines(pathlib.Path(guide_path).read_text(encoding="utf-8")))
    # In the guide, three dots replace what differs between lines.
    unknown = [line for line in lines if not all(piece.strip() in literals for piece in line.split("..."))]
    print(f"{len(lines)} lines explained; not written by the daemon: {unknown}")
    return 1 if unknown or len(lines) < 10 else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
