"""Checks the expressions of rules and panels against the metrics, because an unknown name would never alert."""

import re

TARGET_LABELS = {"job", "instance", "alertname", "severity"}
OTHER_METRICS = {"up": (), "ALERTS": ("alertstate",)}
KEYWORDS = {"by", "without", "on", "ignoring", "group_left", "group_right", "and", "or", "unless", "bool", "offset"}
STRING = r'"(?:[^"\\]|\\.)*"'
MATCHER = re.compile(rf"(\w+)\s*(=~|!~|!=|=)\s*({STRING})")
SELECTOR = re.compile(rf"([a-zA-Z_:][\w:]*)\s*{{((?:[^{{}}\"]|{STRING})*)}}")
GROUPING = re.compile(r"\b(?:by|without|on|ignoring|group_left|group_right)\s*\(([^()]*)\)")
RANGE = re.compile(r"\[[^\]]*\]")
NAME = re.compile(r"(?<![\w.])[a-zA-Z_:][\w:]*\b(?!\s*\()")


class Checker:
    """Raises the exception that error(text) returns, for the first unknown name."""

    def __init__(self, all_metrics, error):
        self.by_name, self.error = all_metrics.by_name(), error

    def labels(self, name):
        if name in OTHER_METRICS:
            return TARGET_LABELS.union(OTHER_METRICS[name])
        if name not in self.by_name:
            raise self.error(f"unknown metric '{name}'")
        return TARGET_LABELS.union(self.by_name[name].all_labels())

    def check_matchers(self, name, text):
        labels = self.labels(name)
        for label, operator, value in MATCHER.findall(text):
            if label not in labels:
                raise self.error(f"'{name}' has no label '{label}'")
            metric = self.by_name.get(name)
            if metric and metric.convention and label == metric.own_label():
                self.check_states(metric, value[1:-1].split("|") if "~" in operator else [value[1:-1]])

    def check_states(self, metric, states):
        known = [value.label for value in metric.convention.values]
        for state in states:
            if state not in known and not state.startswith("$"):
                raise self.error(f"'{metric.name}' has no state '{state}'")

    def check(self, text):
        """Checks an expression. Returns the names of its metrics."""
        for name, matchers in SELECTOR.findall(text):
            self.check_matchers(name, matchers)
        bare = RANGE.sub("", SELECTOR.sub(r"\1", text))
        groups = [label.strip() for group in GROUPING.findall(bare) for label in group.split(",") if label.strip()]
        used = set(NAME.findall(re.sub(STRING, "", GROUPING.sub("", bare)))) - KEYWORDS
        labels = set().union(*map(self.labels, used)) if used else set()
        for label in groups:
            if label not in labels:
                raise self.error(f"no metric of '{text}' has the label '{label}'")
        return used
