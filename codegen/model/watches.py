"""Which states and readings are problems: parsed from watches.def and checked against the metrics."""

import re
from dataclasses import dataclass, field

from codegen.model.notifications import SEVERITIES
from codegen.reader import Place

TROUBLES = ("warning", "critical")
MINUTES = re.compile(r"[1-9]\d*m$")
LEVEL = re.compile(r"(\d+)/(\d+)$")


@dataclass
class Watch:
    """A column whose value is a state. severities: of each state, by its label."""
    place: Place
    metric: object
    wait: str
    severities: dict

    def values(self, severity):
        """Returns the states of this severity."""
        return [value for value in self.metric.convention.values if self.severities[value.label] == severity]


@dataclass
class Limit:
    """A column with a lower limit. levels: {severity: (problem below, recovery from)}."""
    place: Place
    metric: object
    wait: str
    levels: dict
    only_while: object = None  # the metric that must be above 0


@dataclass
class Watches:
    severities: dict = field(default_factory=dict)     # convention: {label: severity}
    watches: list = field(default_factory=list)
    limits: list = field(default_factory=list)


class Reader:
    def __init__(self, snmp, metrics):
        self.snmp, self.metrics = snmp, metrics
        self.by_column = {each.column.name: each for each in metrics.all}
        self.all = Watches()

    def read(self, lines):
        readers = {"severity": self.read_severity, "watch": self.read_watch, "limit": self.read_limit}
        for line in lines:
            if line.words[0] not in readers or len(line.words) < 3:
                raise line.unknown()
            readers[line.words[0]](line)
        self.check()
        return self.all

    def metric(self, line, name):
        if name not in self.by_column:
            raise line.error(f"column '{name}' is not a metric")
        return self.by_column[name]

    def severities(self, line, words, convention):
        labels = [value.label for value in convention.values]
        options = line.options(words, labels)
        for severity in options.values():
            if severity not in SEVERITIES:
                raise line.error(f"unknown severity '{severity}'; expected one of {', '.join(SEVERITIES)}")
        return options

    def read_severity(self, line):
        name = line.words[1]
        convention = self.snmp.found.conventions.get(name)
        if convention is None or name in self.all.severities:
            raise line.error(f"unknown or duplicate convention '{name}'")
        options = self.severities(line, line.words[2:], convention)
        for value in convention.values:
            if value.label not in options:
                raise line.error(f"missing severity of '{value.label}'")
        self.all.severities[name] = options

    def wait(self, line, words):
        """Returns how long the problem must last, and the remaining words."""
        word = words[0] if words else ""
        if not word.startswith("for=") or not MINUTES.match(word[len("for="):]):
            raise line.error("missing for=MINUTESm, which must come first")
        return word[len("for="):], words[1:]

    def read_watch(self, line):
        metric = self.metric(line, line.words[1])
        wait, rest = self.wait(line, line.words[2:])
        if metric.convention is None or metric.convention.name not in self.all.severities:
            raise line.error(f"missing severity line above for the states of '{metric.column.name}'")
        own = self.severities(line, rest, metric.convention)
        self.all.watches.append(Watch(line.place, metric, wait,
                                      {**self.all.severities[metric.convention.name], **own}))

    def read_limit(self, line):
        metric, word = self.metric(line, line.words[1]), line.words[2]
        if word != "below" or metric.kind not in ("gauge", "decimal"):
            raise line.error("expected: limit COLUMN below..., of a column that is a number")
        wait, rest = self.wait(line, line.words[3:])
        options = line.options(rest, (*TROUBLES, "while"))
        levels = {}
        for severity in TROUBLES:
            found = LEVEL.match(options.get(severity, ""))
            if not found or int(found.group(1)) > int(found.group(2)):
                raise line.error(f"{severity}=AT/OVER is required, with OVER not below AT")
            levels[severity] = tuple(map(int, found.groups()))
        only_while = self.metric(line, options["while"]) if "while" in options else None
        if only_while and only_while.labels != metric.labels:
            raise line.error(f"'{options['while']}' has different rows")
        self.all.limits.append(Limit(line.place, metric, wait, levels, only_while))

    def check(self):
        """Checks that all status columns are watched."""
        watched = {each.metric.name for each in self.all.watches}
        for metric in self.metrics.all:
            if metric.kind == "states" and metric.column.name.endswith("Status") and metric.name not in watched:
                raise metric.column.place.error(f"missing watch line for '{metric.name}' in watches.def")


def read(data, snmp, metrics):
    """Returns all watches and limits of monitoring/watches.def. Raises DataError."""
    return Reader(snmp, metrics).read(data.lines("monitoring/watches.def"))
