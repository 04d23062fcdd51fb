"""Writes the alerting rules of Prometheus: one per state that is a problem, and the hand-written ones."""

import re

import yaml

from codegen.model import expressions
from codegen.model import moduleNames as names
from codegen.reader import DataError
from codegen.writers import yamlFile

PLACEHOLDER = re.compile(r"@(\w+)@")
BY_HAND = "data/monitoring/rules.yml"


def title(metric):
    return names.capital(metric.column.name.removeprefix("ts"))


def object_of(metric, columns):
    """Returns the words by which a rule refers to the object: names and row, or "array" for a scalar."""
    if metric.column.table is None:
        return "array"
    texts = [label for label in metric.labels if label in columns and columns[label].type == "string"]
    names_of = ", ".join(f"{{{{ $labels.{label} }}}}" for label in texts)
    rows = ".".join(f"{{{{ $labels.{label} }}}}" for label in metric.labels if label not in columns)
    return " ".join(filter(None, [metric.column.table.item, names_of, f"(row {rows})"]))


def about(column):
    return " ".join(column.paragraphs())


class Rules:
    def __init__(self, snmp, all_metrics, watches):
        self.metrics, self.watches = all_metrics, watches
        self.columns = {column.name: column for column in snmp.mib.columns}

    def rule(self, metric, severity, expression, wait, what):
        """Returns a rule, with its expression checked like those of the hand-written ones."""
        expressions.Checker(self.metrics, DataError).check(expression)
        about_whom = f"{{{{ $labels.instance }}}}: {object_of(metric, self.columns)}"
        return {"alert": f"Tessera{title(metric)}{names.capital(severity)}", "expr": expression, "for": wait,
                "labels": {"severity": severity},
                "annotations": {"summary": f"{about_whom}: {metric.column.name} is {what}",
                                "description": about(metric.column)}}

    def of_watch(self, watch):
        name = watch.metric.name
        for severity in ("critical", "warning"):
            labels = "|".join(value.label for value in watch.values(severity))
            if labels:
                operator = "=~" if "|" in labels else "="
                yield self.rule(watch.metric, severity, f'{name}{{{name}{operator}"{labels}"}} == 1', watch.wait,
                                f"{{{{ $labels.{name} }}}}")

    def of_limit(self, limit):
        only_while = f" and on (job, instance, {', '.join(limit.metric.labels)}) {limit.only_while.name} > 0" \
            if limit.only_while else ""
        for severity, (level, _) in limit.levels.items():
            yield self.rule(limit.metric, severity, f"{limit.metric.name} < {level}{only_while}", limit.wait,
                            "{{ $value }}")

    def made(self):
        rules = [rule for each in self.watches.watches for rule in self.of_watch(each)]
        return rules + [rule for each in self.watches.limits for rule in self.of_limit(each)]

    def by_hand(self, group):
        """Returns a group of data/monitoring/rules.yml, with expressions checked and placeholders replaced."""
        def words(match):
            if match.group(1) not in self.columns:
                raise DataError(f"{BY_HAND}: unknown column '{match.group(1)}'")
            return about(self.columns[match.group(1)])

        checker = expressions.Checker(self.metrics, lambda text: DataError(f"{BY_HAND}: {text}"))
        for rule in group["rules"]:
            checker.check(rule["expr"])
            rule["annotations"] = {key: PLACEHOLDER.sub(words, text) for key, text in rule["annotations"].items()}
        return group

    def file(self, by_hand):
        """Returns the whole file. by_hand: the contents of data/monitoring/rules.yml."""
        groups = [self.by_hand(group) for group in yaml.safe_load(by_hand)["groups"]]
        return yamlFile.document([], {"groups": groups + [{"name": "tessera-states", "rules": self.made()}]})
