"""Writes the Grafana dashboard from panels.def."""

import json
import re

from codegen.model import expressions
from codegen.model.metrics import INFO

LINE_WIDTH, HEIGHT, STAT_HEIGHT = 24, 8, 4
LEGEND_LABEL = re.compile(r"{{(\w+)}}")
SELECTOR = re.compile(r"(\w+)({.*})?$")
SOURCE = {"type": "prometheus", "uid": "${source}"}
COLOURS = {"ok": "green", "warning": "orange", "critical": "red"}
NEUTRAL = ("purple", "blue", "text")  # for states of which none is better than another
VARIABLES = [
    {"name": "source", "label": "Data source", "type": "datasource", "query": "prometheus", "hide": 0},
    {"name": "array", "label": "Arrays", "type": "query", "datasource": SOURCE, "refresh": 2, "sort": 1, "hide": 0,
     "multi": True, "includeAll": True, "current": {"text": "All", "value": "$__all"},
     "definition": "label_values(globalStatus, instance)",
     "query": {"query": "label_values(globalStatus, instance)", "refId": "array"}},
]
LEGEND = {"displayMode": "list", "placement": "bottom", "showLegend": True, "calcs": []}
TOOLTIP = {"mode": "multi", "sort": "desc"}
LATEST = {"calcs": ["lastNotNull"], "fields": "", "values": False}
STAT = {"reduceOptions": LATEST, "colorMode": "background", "graphMode": "none", "justifyMode": "auto",
        "orientation": "auto", "textMode": "auto", "wideLayout": True, "showPercentChange": False}
BARS = {"reduceOptions": LATEST, "displayMode": "basic", "orientation": "horizontal", "showUnfilled": True,
        "valueMode": "color", "namePlacement": "auto", "sizing": "auto", "minVizHeight": 16, "maxVizHeight": 300,
        "minVizWidth": 8}
TIMELINE = {"legend": LEGEND, "tooltip": TOOLTIP, "mergeValues": True, "showValue": "auto", "rowHeight": 0.9}
# For each kind of panel: Grafana's type and its options.
KINDS = {
    "stat": ("stat", STAT), "state": ("stat", {**STAT, "textMode": "value_and_name"}), "bars": ("bargauge", BARS),
    "lines": ("timeseries", {"legend": LEGEND, "tooltip": TOOLTIP}), "history": ("state-timeline", TIMELINE),
    "table": ("table", {"showHeader": True, "cellHeight": "sm", "frameIndex": 0}),
}
OVER_TIME, OF_STATES = ("lines", "history"), ("state", "history")
OPTIONS = ("min", "max", "warning", "critical")
# Hidden in a table, in addition to the labels without a title.
HIDDEN = ("Time", "Value", "__name__", "job")


def thresholds(options):
    """Returns the colours of the limits. If the critical limit is the lower one, low values are the problem."""
    limits = {severity: float(options[severity]) for severity in ("warning", "critical") if severity in options}
    if len(limits) == 2 and limits["critical"] < limits["warning"]:
        steps = [("critical", None), ("warning", limits["critical"]), ("ok", limits["warning"])]
    else:
        steps = [("ok", None), *limits.items()]
    return {"mode": "absolute", "steps": [{"color": COLOURS[severity] if limits else "blue", "value": value}
                                          for severity, value in steps]}


class Builder:
    """Lays out panels from left to right; a panel that does not fit starts a new line."""

    def __init__(self, metrics, watches):
        self.metrics = metrics
        self.severities = dict(watches.severities)
        self.watch_of = {each.metric.name: each for each in watches.watches}
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
        """Adds a row. If its title contains $array, it appears once for each array."""
        title = line.words[1]
        self.new_line()
        self.add(type="row", title=title, collapsed=False, panels=[], gridPos=self.place(LINE_WIDTH, 1),
                 **({"repeat": "array"} if "$array" in title else {}))
        self.new_line()

    # --- states

    def severity_of(self, metric):
        """Returns {label: severity}; empty for a column of states that is not watched."""
        watch = self.watch_of.get(metric.name)
        if watch:
            return watch.severities
        return self.severities.get(metric.convention.name, {}) if metric.kind == INFO else {}

    def mappings(self, metric, key):
        """Returns the name and the colour of every state. key: returns what identifies a state."""
        severities = self.severity_of(metric)
        return [{"type": "value", "options": {
            str(key(value)): {"text": value.label, "index": index,
                              "color": COLOURS[severities[value.label]] if severities else NEUTRAL[index % 3]}
            for index, value in enumerate(metric.convention.values)}}]

    def state_number(self, line, selector):
        """Returns an expression for the number of the state, and its mappings. Each state is a series of 0 or 1."""
        name, matchers = SELECTOR.match(selector).groups()
        metric = self.metrics.by_name().get(name)
        if not metric or not metric.convention:
            raise line.error(f"'{name}' is not a column of states")
        inner = (matchers or "{}")[1:-1]
        series = " or ".join(f'{value.number} * {name}{{{inner and inner + ","}{metric.own_label()}="{value.label}"}}'
                             for value in metric.convention.values if value.number)
        by = ", ".join(("instance", *metric.labels))
        # State 0 has no series in the expression. The minimum is added because a negative number is less than 0.
        number = f"max by ({by}) ({series})"
        if any(value.number < 0 for value in metric.convention.values):
            number = f"{number} + min by ({by}) ({series})"
        return number, self.mappings(metric, lambda value: value.number)

    # --- panels

    def table(self, line, used, columns):
        """Returns the colours of states in a table, and the transformation that orders and names its columns."""
        titles = dict(pair.partition("=")[::2] for pair in columns.split(","))
        labels = self.labels(used)
        self.check_labels(line, titles, labels)
        hidden = {name: True for name in (*HIDDEN, *sorted(labels.union(("instance",)).difference(titles)))}
        overrides = []
        for metric in filter(None, map(self.metrics.by_name().get, sorted(used))):
            if metric.own_label() in titles and metric.convention:
                overrides.append({"matcher": {"id": "byName", "options": titles[metric.own_label()]}, "properties": [
                    {"id": "mappings", "value": self.mappings(metric, lambda value: value.label)},
                    {"id": "custom.cellOptions", "value": {"type": "color-text"}}]})
        order = {label: index for index, label in enumerate(titles)}
        return overrides, [{"id": "organize", "options": {
            "excludeByName": hidden, "indexByName": order, "renameByName": titles}}]

    def labels(self, used):
        known = self.metrics.by_name()
        return {label for name in used if name in known for label in known[name].all_labels()}

    @staticmethod
    def check_labels(line, used, labels):
        for label in used:
            if label not in labels and label != "instance":
                raise line.error(f"no metric of the panel has the label '{label}'")

    def panel(self, line):
        kind, width, unit, title, legend, expression = line.words[1:7]
        if kind not in KINDS or not width.isdigit() or not 1 <= int(width) <= LINE_WIDTH:
            raise line.error(f"a panel has a kind of {', '.join(KINDS)} and a width of 1 to {LINE_WIDTH}")
        if not line.below:
            raise line.error("a panel needs a description below it")
        options = line.options(line.words[7:], OPTIONS)
        used = expressions.Checker(self.metrics, line.error).check(expression)
        defaults = {"unit": unit, "thresholds": thresholds(options), "color": {
            "mode": "palette-classic" if kind == "lines" else "thresholds"}, "mappings": []}
        defaults.update((name, float(options[name])) for name in ("min", "max") if name in options)
        overrides, extra = [], {}
        if kind in OF_STATES:
            expression, defaults["mappings"] = self.state_number(line, expression)
        if kind == "table":
            overrides, extra["transformations"] = self.table(line, used, legend)
            legend = ""
        self.check_labels(line, LEGEND_LABEL.findall(legend), self.labels(used))
        grafana, panel_options = KINDS[kind]
        target = {"refId": "A", "datasource": SOURCE, "editorMode": "code", "expr": expression,
                  "legendFormat": legend, "instant": kind not in OVER_TIME, "range": kind in OVER_TIME,
                  "format": "table" if kind == "table" else "time_series"}
        self.add(type=grafana, title=title, description=" ".join(" ".join(each.words) for each in line.below),
                 datasource=SOURCE, targets=[target], options=panel_options,
                 fieldConfig={"defaults": defaults, "overrides": overrides}, **extra,
                 gridPos=self.place(int(width), STAT_HEIGHT if grafana == "stat" else HEIGHT))


def render(snmp, metrics, watches, lines):
    """Returns the dashboard as JSON. Raises DataError."""
    builder = Builder(metrics, watches)
    for line in lines:
        if line.words[0] == "row" and len(line.words) == 2:
            builder.row(line)
        elif line.words[0] == "panel" and len(line.words) >= 7:
            builder.panel(line)
        else:
            raise line.unknown()
    dashboard = {"id": None, "uid": "tessera", "title": "Tessera storage array",
                 "description": snmp.found.module.paragraphs()[0], "tags": ["storage", snmp.found.module.name],
                 "schemaVersion": 39, "version": 1, "editable": True, "graphTooltip": 1, "timezone": "browser",
                 "refresh": "1m", "time": {"from": "now-6h", "to": "now"}, "annotations": {"list": []}, "links": [],
                 "templating": {"list": VARIABLES}, "panels": builder.panels}
    return json.dumps(dashboard, indent=2) + "\n"
