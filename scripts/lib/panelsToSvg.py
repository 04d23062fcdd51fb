"""Draws panels of a Grafana dashboard with their data: what they show, not how Grafana looks."""

from xml.sax.saxutils import escape

COLUMN, ROW, GAP, MARGIN, TITLE = 50, 30, 6, 12, 22
PAPER, PANEL, INK, FAINT = "#111217", "#181b1f", "#d0d3d9", "#5b6068"
COLOURS = {"green": "#56a64b", "orange": "#e0862a", "red": "#d44a3a", "blue": "#3a6fb5", "purple": "#8f5fb5", "text": FAINT}
PALETTE = ("#73bf69", "#f2cc0c", "#8ab8ff", "#ff780a", "#f2495c", "#5794f2", "#b877d9", "#37872d")
UNITS = {"percent": " %", "gbytes": " GiB", "celsius": " °C", "rotrpm": " rpm", "volt": " V"}
MOST_SERIES, MOST_LINES, MOST_HEIGHT = 8, 6, 32


class Canvas:
    def __init__(self):
        self.parts = []

    def text(self, x, y, text, colour=INK, size=11, anchor="start"):
        self.parts.append(f'<text x="{x:.0f}" y="{y:.0f}" fill="{colour}" font-size="{size}" text-anchor="{anchor}">'
                          f"{escape(text)}</text>")

    def box(self, x, y, width, height, colour, radius=2):
        self.parts.append(f'<rect x="{x:.1f}" y="{y:.1f}" width="{max(width, 0):.1f}" height="{height:.1f}" '
                          f'rx="{radius}" fill="{colour}"/>')

    def line(self, points, colour):
        places = " ".join(f"{x:.1f},{y:.1f}" for x, y in points)
        self.parts.append(f'<polyline points="{places}" fill="none" stroke="{colour}" stroke-width="1.5"/>')


class Panel:
    """A panel with its inner rectangle. series: (name, labels, [(time, value)])."""

    def __init__(self, canvas, panel, series, place):
        self.canvas, self.panel, self.series = canvas, panel, series
        self.x, self.y, self.width, self.height = place
        self.defaults = panel["fieldConfig"]["defaults"]

    def mapped(self, value, mappings=None):
        """Returns the name and the colour of a state, or None."""
        for mapping in self.defaults["mappings"] if mappings is None else mappings:
            found = mapping["options"].get(value if isinstance(value, str) else f"{value:.0f}")
            if found:
                return found["text"], COLOURS[found["color"]]
        return None

    def shown(self, value):
        """Returns a formatted value, and the colour of its state or of the highest threshold that it reaches."""
        reached = [step["color"] for step in self.defaults["thresholds"]["steps"]
                   if step["value"] is None or value >= step["value"]]
        text = f"{value:.1f}".rstrip("0").rstrip(".") + UNITS.get(self.defaults["unit"], "")
        return self.mapped(value) or (text, COLOURS[reached[-1]])

    def draw(self):
        {"stat": self.stat, "bargauge": self.bars, "timeseries": self.lines, "state-timeline": self.history,
         "table": self.table}[self.panel["type"]]()

    def stat(self):
        tile = self.width / max(len(self.series), 1)
        for index, (name, _, points) in enumerate(self.series):
            text, colour = self.shown(points[-1][1])
            left = self.x + index * tile
            self.canvas.box(left, self.y, tile - 2, self.height, colour)
            self.canvas.text(left + tile / 2, self.y + self.height / 2 + 6, text, "#ffffff", 20, "middle")
            self.canvas.text(left + tile / 2, self.y + self.height - 6, name, "#ffffff", 10, "middle")

    def bars(self):
        lines = self.series[:MOST_SERIES]
        most = self.defaults.get("max") or max((points[-1][1] for _, _, points in lines), default=1) or 1
        step = min(self.height / max(len(lines), 1), MOST_HEIGHT)
        for index, (name, _, points) in enumerate(lines):
            text, colour = self.shown(points[-1][1])
            top, room = self.y + index * step, self.width - 190
            self.canvas.text(self.x, top + step / 2 + 4, name)
            self.canvas.box(self.x + 110, top + 2, room, step - 4, PAPER)
            self.canvas.box(self.x + 110, top + 2, room * points[-1][1] / most, step - 4, colour)
            self.canvas.text(self.x + self.width, top + step / 2 + 4, text, anchor="end")

    def times(self):
        moments = [moment for _, _, points in self.series for moment, _ in points]
        return min(moments), max(max(moments), min(moments) + 1)

    def lines(self):
        lines = self.series[:MOST_SERIES]
        if not lines:
            return
        begin, end = self.times()
        values = [value for _, _, points in lines for _, value in points]
        low = self.defaults.get("min", min(values))
        high = self.defaults.get("max", max(values))
        high = high if high > low else low + 1
        height = self.height - 18
        for index, (name, _, points) in enumerate(lines):
            colour = PALETTE[index % len(PALETTE)]
            self.canvas.line([(self.x + 50 + (self.width - 50) * (moment - begin) / (end - begin),
                               self.y + height * (high - value) / (high - low)) for moment, value in points], colour)
            self.canvas.text(self.x + 50 + index * (self.width - 50) / len(lines), self.y + self.height,
                             name[:int((self.width - 50) / len(lines) / 6)], colour, 10)
        for value, y in ((high, self.y + 8), (low, self.y + height)):
            self.canvas.text(self.x, y, self.shown(value)[0], FAINT, 10)

    def history(self):
        lines = self.series[:MOST_LINES]
        if not lines:
            return
        begin, end = self.times()
        step, room = min(self.height / len(lines), MOST_HEIGHT), self.width - 110
        for index, (name, _, points) in enumerate(lines):
            top = self.y + index * step
            self.canvas.text(self.x, top + step / 2 + 4, name[:17])
            ends = [moment for moment, _ in points[1:]] + [end]
            for (moment, value), until in zip(points, ends):
                self.canvas.box(self.x + 110 + room * (moment - begin) / (end - begin), top + 2,
                                room * (until - moment) / (end - begin) + 0.5, step - 4, self.shown(value)[1], 0)
            self.canvas.text(self.x + 116, top + step / 2 + 4, self.shown(points[-1][1])[0], "#ffffff", 10)

    def table(self):
        """Draws the columns in the order and with the names of the transformation."""
        organized = self.panel["transformations"][0]["options"]
        columns = sorted(organized["renameByName"], key=organized["indexByName"].get)
        mappings = {each["matcher"]["options"]: each["properties"][0]["value"]
                    for each in self.panel["fieldConfig"]["overrides"]}
        for index, label in enumerate(columns):
            title, left = organized["renameByName"][label], self.x + index * self.width / len(columns)
            self.canvas.text(left, self.y + 12, title, FAINT)
            for row, (_, labels, _) in enumerate(self.series[:MOST_SERIES]):
                text = labels.get(label, "")
                colour = (self.mapped(text, mappings.get(title, [])) or (text, INK))[1]
                self.canvas.text(left, self.y + 30 + 18 * row, text[:int(self.width / len(columns) / 6)], colour)


def picture(title, panels):
    """panels: (panel of the dashboard, its series) in its order. Heights and widths are those of the dashboard."""
    canvas = Canvas()
    bottom = 0
    for panel, series in panels:
        place = panel["gridPos"]
        x, y = MARGIN + place["x"] * COLUMN, MARGIN + TITLE + place["y"] * ROW
        width, height = place["w"] * COLUMN - GAP, place["h"] * ROW - GAP
        bottom = max(bottom, y + height)
        if panel["type"] == "row":
            canvas.text(x, y + 18, panel["title"].replace("$array", "array1"), size=14)
            continue
        canvas.box(x, y, width, height, PANEL)
        canvas.text(x + 8, y + 16, panel["title"], size=12)
        if not series:
            canvas.text(x + width / 2, y + height / 2, "none" if panel["type"] == "table" else "no data", FAINT,
                        anchor="middle")
            continue
        Panel(canvas, panel, series, (x + 8, y + TITLE + 2, width - 16, height - TITLE - 10)).draw()
    width, height = 2 * MARGIN + 24 * COLUMN, bottom + MARGIN
    head = (f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}" viewBox="0 0 {width} {height}" '
            f'font-family="sans-serif">\n<title>{escape(title)}</title>\n'
            f'<rect width="100%" height="100%" fill="{PAPER}"/>\n')
    return head + "\n".join(canvas.parts) + "\n</svg>\n"
