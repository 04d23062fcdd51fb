"""Renders the output of a terminal as a picture.

Usage: textToSvg.py TITLE PICTURE < TEXT            writes the picture, unless only times have changed
       textToSvg.py TITLE PICTURE --check < TEXT    fails if the picture shows something else
"""

import difflib
import os
import re
import sys
from xml.sax.saxutils import escape

LINE_HEIGHT, CHARACTER_WIDTH, MARGIN, TITLE_HEIGHT = 18, 7.8, 16, 30
PAPER, BAR, INK, HEADING, COMMAND = "#1d2026", "#2b2f38", "#d4d7dd", "#8fb8f6", "#9fd39a"


def colour_of(line):
    if line.startswith("--") or line.startswith("=="):
        return HEADING
    return COMMAND if line.lstrip().startswith("$ ") else INK


def picture(title, lines):
    width = round(2 * MARGIN + CHARACTER_WIDTH * max(map(len, lines)))
    height = TITLE_HEIGHT + 2 * MARGIN + LINE_HEIGHT * len(lines)
    yield (f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}" font-family="monospace" '
           f'font-size="13" xml:space="preserve">')
    yield f"<title>{escape(title)}</title>"
    yield f'<rect width="100%" height="100%" rx="8" fill="{PAPER}"/>'
    yield f'<rect width="100%" height="{TITLE_HEIGHT}" rx="8" fill="{BAR}"/>'
    yield f'<text x="50%" y="20" text-anchor="middle" fill="{INK}">{escape(title)}</text>'
    for number, line in enumerate(lines):
        if line:
            y = TITLE_HEIGHT + MARGIN + LINE_HEIGHT * (number + 1) - 4
            yield f'<text x="{MARGIN}" y="{y}" fill="{colour_of(line)}">{escape(line)}</text>'
    yield "</svg>"


def without_times(lines):
    return [re.sub(r"after [\d.]+ s\b", "after some time", line) for line in lines]


def main():
    lines = [line.rstrip().expandtabs() for line in sys.stdin.read().strip("\n").splitlines()]
    if not lines or len(sys.argv) not in (3, 4) or sys.argv[3:] not in ([], ["--check"]):
        raise SystemExit(__doc__)
    title, path = sys.argv[1:3]
    new, old = list(picture(title, lines)), []
    if os.path.exists(path):
        with open(path, encoding="utf-8") as file:
            old = file.read().splitlines()
    name = os.path.basename(path)
    changes = list(difflib.unified_diff(without_times(old), without_times(new), "shown", "run", lineterm="", n=0))
    if not changes:
        print(f"{name} is up to date; times are not compared.")
    elif len(sys.argv) == 4:
        raise SystemExit("\n".join([*changes, f"{name} is out of date; run scripts/record-demo"]))
    else:
        with open(path, "w", encoding="utf-8") as file:
            file.write("\n".join(new) + "\n")
        print(f"{name} was written.")


if __name__ == "__main__":
    main()
