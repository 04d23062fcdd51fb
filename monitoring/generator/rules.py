"""Writes the alerting rules of Prometheus: one for each state that is a trouble, and those of the template."""

import re

from apiMgmt.common.generator.reader import DataError
from mib.generator import names

from . import expressions, yamlText

PLACEHOLDER = re.compile(r"@(\w+)@")
EXPRESSION = re.compile(r"^\s+expr: (.*)$", re.MULTILINE)
HEAD = ["Made from the data of the MIB; edits are lost."]


def title(metric):
    return names.capital(metric.column.name.removeprefix("ts"))


def object_of(metric, found, columns):
    """How a rule calls the object: by its names, or by its rows when it has none; "array" for a scalar."""
    if metric.column.table is None:
        return "array"
    texts = [label for label in metric.labels if label in columns and columns[label].type == "string"]
    values = ", ".join(f"{{{{ $labels.{label} }}}}" for label in texts or metric.labels)
    return f"{found.tables[metric.column.table.name].option('object')} {values}"


def about(found, name):
    return " ".join(found.columns[name].paragraphs())


class Rules:
    def __init__(self, renderer, all_metrics, watches):
        self.found, self.metrics, self.watches = renderer.found, all_metrics, watches
        self.columns = {column.name: column for column in renderer.mib.columns}

    def rule(self, metric, severity, expression, wait, what):
        """Checked like those that are written by hand."""
        expressions.Checker(self.metrics, DataError).check(expression)
        about_whom = f"{{{{ $labels.instance }}}}: {object_of(metric, self.found, self.columns)}"
        return {"alert": f"Tessera{title(metric)}{names.capital(severity)}", "expr": expression, "for": wait,
                "labels": {"severity": severity},
                "annotations": {"summary": f"{about_whom}: {metric.column.name} is {what}",
                                "description": about(self.found, metric.column.name)}}

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

    def by_hand(self, template):
        def words(match):
            if match.group(1) not in self.found.columns:
                raise DataError(f"rules.yml: there is no column '{match.group(1)}'")
            return about(self.found, match.group(1)).replace('"', '\\"')

        checker = expressions.Checker(self.metrics, lambda text: DataError(f"rules.yml: {text}"))
        for expression in EXPRESSION.findall(template):
            checker.check(expression)
        return PLACEHOLDER.sub(words, template)

    def file(self, template):
        """The whole file; template: the text of the rules that are written by hand, which ends in its last rule."""
        groups = yamlText.document([], [{"name": "tessera-states", "rules": self.made()}])
        return "".join(f"# {line}\n" for line in HEAD) + self.by_hand(template) + \
            "".join(f"  {line}\n" for line in groups.splitlines())
