"""Writes the Grafana dashboard from panels.def."""

import json
import re

from codegen.model import expressions

KINDS = {"stat": "stat", "lines": "timeseries", "bars": "bargauge", "table": "table"}
LINE_WIDTH, HEIGHT, STAT_HEIGHT = 24, 8, 4
LEGEND_LABEL = re.compile(r"{{(\w+)}}")
SOURCE = {"type": "prometheus", "uid": "${source}"}
VARIABLES = [
    {"name": "source", "label": "Data source", "type": "datasource", "query": "prometheus"},
    {"name": "array", "label": "Array", "type": "query", "datasource": SOURCE, "refresh": 2,
     "definition": "label_values(globalStatus, instance)", "query": "label_values(globalStatus, instance)"},
]


class Builder:
    """Lays out panels from left to right; a panel that does not fit starts a new line."""

    def __init__(self, metrics):
        self.metrics = metrics
        self.panels = []
        self.left, self.top, self.height = 0, 0, 0

    def place(self, width, height):
        if self.left + width > LINE_WIDTH:
            self.new_line()
        place = {"x": self.left, "y": self.top, "w": width, "h": height}
        self.left, self.height = self.left + width, max(self.height, height)
        return place

    def new_line(self):
        self.left, self.top, self.height = 0, self.top + self.height, 0

    def add(self, **panel):
        self.panels.append({"id": len(self.panels) + 1, **panel})

    def row(self, line):
        self.new_line()
        self.add(type="row", title=line.words[1], collapsed=False, panels=[], gridPos=self.place(LINE_WIDTH, 1))
        self.new_line()

    def panel(self, line):
        kind, width, unit, title, legend, expression = line.words[1:]
        if kind not in KINDS or not width.isdigit() or not 1 <= int(width) <= LINE_WIDTH:
            raise line.error(f"expected: a kind ({', '.join(KINDS)}) and a width from 1 to {LINE_WIDTH}")
        used = expressions.Checker(self.metrics, line.error).check(expression)
        labels = {label for name in used for label in self.metrics.by_name()[name].all_labels()}
        for label in LEGEND_LABEL.findall(legend):
            if label not in labels:
                raise line.error(f"no metric of the panel has the label '{label}'")
        target = {"refId": "A", "datasource": SOURCE, "expr": expression, "legendFormat": legend,
                  "instant": kind != "lines", "range": kind == "lines",
                  "format": "table" if kind == "table" else "time_series"}
        options = {"textMode": "value_and_name"} if legend.startswith("{{") and kind == "stat" else {}
        self.add(type=KINDS[kind], title=title, datasource=SOURCE, targets=[target], options=options,
                 fieldConfig={"defaults": {"unit": unit}, "overrides": []},
                 gridPos=self.place(int(width), STAT_HEIGHT if kind == "stat" else HEIGHT))


def render(snmp, metrics, lines):
    """Returns the dashboard as JSON. Raises DataError."""
    builder = Builder(metrics)
    for line in lines:
        if line.words[0] == "row" and len(line.words) == 2:
            builder.row(line)
        elif line.words[0] == "panel" and len(line.words) == 7:
            builder.panel(line)
        else:
            raise line.unknown()
    dashboard = {"title": "Tessera storage array", "uid": "tessera", "tags": ["storage", snmp.found.module.name],
                 "schemaVersion": 37, "editable": True, "refresh": "1m", "time": {"from": "now-6h", "to": "now"},
                 "templating": {"list": VARIABLES}, "panels": builder.panels}
    return json.dumps(dashboard, indent=2) + "\n"
