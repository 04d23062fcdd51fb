"""Copies a source file with a fault in it: plant.py FAULTS TARGET --root ROOT --out FILE.

A fault of faults.def is three lines, "TARGET: SOURCE", "- TEXT" and "+ TEXT": in that source, the one place with the
first text gets the second. A text that is not there exactly once is an error, so that a fault keeps up with the code.
"""

import argparse
import pathlib
import sys


def read_faults(path):
    """Target to (source, old text, new text)."""
    faults = {}
    lines = [line for line in path.read_text().splitlines() if line and not line.startswith("#")]
    for head, old, new in zip(lines[0::3], lines[1::3], lines[2::3], strict=True):
        target, source = head.split(": ")
        if not (old.startswith("- ") and new.startswith("+ ")) or target in faults:
            raise SystemExit(f"{path}: the fault of '{target}' is not well formed")
        faults[target] = (source, old[2:], new[2:])
    return faults


def main():
    arguments = argparse.ArgumentParser()
    arguments.add_argument("faults", type=pathlib.Path)
    arguments.add_argument("target")
    arguments.add_argument("--root", type=pathlib.Path)
    arguments.add_argument("--out", type=pathlib.Path)
    arguments.add_argument("--print-source", action="store_true")
    given = arguments.parse_args()
    faults = read_faults(given.faults)
    if given.target not in faults:
        raise SystemExit(f"{given.faults}: no fault for '{given.target}'")
    source, old, new = faults[given.target]
    if given.print_source:
        print(source)
        return
    text = (given.root / source).read_text()
    if text.count(old) != 1:
        raise SystemExit(f"{given.faults}: '{old}' stands {text.count(old)} times in {source}, not once")
    given.out.parent.mkdir(parents=True, exist_ok=True)
    given.out.write_text(text.replace(old, new))


if __name__ == "__main__":
    sys.exit(main())
