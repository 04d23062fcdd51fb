"""Copies source files with faults in them: plant.py FAULTS TARGET --root ROOT --out DIRECTORY SOURCE...

A fault in FAULTS is three lines, "TARGET KIND", "- OLD" and "+ NEW", with two C++ expressions of one type. In the copies
NEW replaces OLD while the fault is active, see lib/plantedFault.h. OLD must occur exactly once in all sources of the
target, so that a fault keeps up with the code.
"""

import argparse
import pathlib
import sys


def read_faults(path, target):
    """Returns the (kind, old, new) of a target."""
    lines = [line for line in path.read_text().splitlines() if line and not line.startswith("#")]
    faults = []
    for head, old, new in zip(lines[0::3], lines[1::3], lines[2::3], strict=True):
        if len(head.split()) != 2 or not (old.startswith("- ") and new.startswith("+ ")):
            raise SystemExit(f"{path}: malformed fault '{head}'; expected 'TARGET KIND', '- OLD' and '+ NEW'")
        if head.split()[0] == target:
            faults.append((head.split()[1], old[2:], new[2:]))
    if sorted(kind for kind, _, _ in faults) != ["logic", "memory"]:
        raise SystemExit(f"{path}: '{target}' needs one logic and one memory fault")
    return faults


def main():
    arguments = argparse.ArgumentParser()
    arguments.add_argument("faults", type=pathlib.Path)
    arguments.add_argument("target")
    arguments.add_argument("--root", type=pathlib.Path, required=True)
    arguments.add_argument("--out", type=pathlib.Path, required=True)
    arguments.add_argument("sources", nargs="+")
    given = arguments.parse_args()
    texts = {source: (given.root / source).read_text() for source in given.sources}
    for kind, old, new in read_faults(given.faults, given.target):
        places = [source for source, text in texts.items() for _ in range(text.count(old))]
        if len(places) != 1:
            raise SystemExit(f"{given.faults}: '{old}' occurs {len(places)} times in {given.sources}; expected once")
        source = places[0]
        texts[source] = texts[source].replace(old, f"(planted_fault::{kind} ? ({new}) : ({old}))")
    given.out.mkdir(parents=True, exist_ok=True)
    for source, text in texts.items():
        header = '#include "fuzz/lib/plantedFault.h"\n'
        (given.out / pathlib.Path(source).name).write_text(header + text)


if __name__ == "__main__":
    sys.exit(main())
