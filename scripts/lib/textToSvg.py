"""Text as it stands in a terminal, as a picture: textToSvg.py TITLE < TEXT > PICTURE."""

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


def main():
    lines = [line.rstrip().expandtabs() for line in sys.stdin.read().strip("\n").splitlines()]
    if not lines or len(sys.argv) != 2:
        raise SystemExit(__doc__)
    print("\n".join(picture(sys.argv[1], lines)))


if __name__ == "__main__":
    main()
