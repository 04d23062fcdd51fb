"""Writes the Zabbix template: one walk per table, which feeds the discovery of its rows and all its items."""

import hashlib

from codegen.model import metrics
from codegen.writers import yamlFile
from codegen.writers.output import dotted, instance

VERSION = "6.4"  # the first with walk[]; later ones import it
NAME = "Tessera storage array by SNMP"
GROUP = "Templates/SAN"
HEAD = ["For Zabbix 6.4 and later."]
PRIORITIES = {"warning": "WARNING", "critical": "HIGH"}
DELAYS = {"seconds": "1m", "minutes": "3m"}
HISTORY = {"FLOAT": {}, "TEXT": {"trends": "0"}}
ROW_NOTE = "The row number in the name is a position in the array's latest response."


def uuid(*words):
    """Returns a UUID that never changes for the same words, in the format of version 4, which Zabbix requires."""
    digits = list(hashlib.sha256("/".join((NAME, *words)).encode()).hexdigest()[:32])
    digits[12], digits[16] = "4", "89ab"[int(digits[16], 16) % 4]
    return "".join(digits)


def identified(*words, **rest):
    return {"uuid": uuid(*words), **rest}


def macro(name):
    return "{#" + name.upper() + "}"


def number_text(numbers, function):
    """Returns a condition that is true for these values."""
    return " or ".join(f"{function}={number}" for number in numbers)


class Template:
    def __init__(self, snmp, all_metrics, watches):
        self.mib, self.found, self.metrics = snmp.mib, snmp.found, all_metrics
        self.columns = {column.name: column for column in self.mib.columns}
        self.watch_of = {each.metric.name: each for each in watches.watches}
        self.limit_of = {each.metric.name: each for each in watches.limits}

    def function(self, metric, suffix, name="last"):
        return f"{name}(/{NAME}/{metric.column.name}{suffix})"

    # --- triggers

    def trigger(self, metric, severity, text, expression, **recovery):
        return identified("trigger", metric.column.name, severity, expression=expression, **recovery,
                          name=f"Tessera: {text}", priority=PRIORITIES[severity],
                          description=" ".join(metric.column.paragraphs()))

    def triggers_of_watch(self, watch, suffix, what):
        metric = watch.metric
        for severity in ("critical", "warning"):
            values = watch.values(severity)
            if values:
                labels = " or ".join(value.label for value in values)
                yield self.trigger(metric, severity, f"{what}{metric.column.name} is {labels}",
                                   number_text([value.number for value in values], self.function(metric, suffix)))

    def triggers_of_limit(self, limit, suffix, what):
        metric = limit.metric
        for severity, (level, over) in limit.levels.items():
            lasting = f"max(/{NAME}/{metric.column.name}{suffix},{limit.wait})<{level}"
            only_while = f" and {self.function(limit.only_while, suffix)}>0" if limit.only_while else ""
            yield self.trigger(metric, severity, f"{what}{metric.column.name} is below {level}", lasting + only_while,
                               recovery_mode="RECOVERY_EXPRESSION",
                               recovery_expression=f"{self.function(metric, suffix)}>={over}")

    def triggers(self, metric, suffix="", what=""):
        found = []
        if metric.name in self.watch_of:
            found += self.triggers_of_watch(self.watch_of[metric.name], suffix, what)
        if metric.name in self.limit_of:
            found += self.triggers_of_limit(self.limit_of[metric.name], suffix, what)
        return found

    # --- items

    def value(self, metric):
        """Returns the fields of an item that describe its value."""
        kind = "TEXT" if metric.kind == metrics.TEXT else "FLOAT"
        made = {"value_type": kind, **HISTORY[kind], "description": " ".join(metric.column.paragraphs())}
        if metric.column.units:
            made["units"] = "!" + metric.column.units.split(" (")[0]
        if metric.convention:
            made["valuemap"] = {"name": metric.convention.name}
        return made

    def scalar(self, metric):
        """Returns an item with its triggers, which use only this item."""
        item = identified("item", metric.column.name, name=metric.column.name, type="SNMP_AGENT",
                          snmp_oid=f"get[{instance(metric.column)}]", key=metric.column.name, delay="1m",
                          **self.value(metric))
        triggers = self.triggers(metric)
        return {**item, "triggers": triggers} if triggers else item

    def walk_key(self, table):
        return f"tessera.walk[{table.name}]"

    def labels(self, table):
        return self.metrics.plans[table.name].labels

    def shown(self, table):
        """Returns the metrics that share the rows of this table."""
        return [each for each in self.metrics.all
                if each.column.table and metrics.row_table(each.column.table, self.mib) is table]

    def switched(self, table):
        """Disables tables that are too long to be walked by default."""
        plans = self.metrics.plans
        return {} if plans[table.name].numbers == plans[None].numbers else {"status": "DISABLED"}

    def walk(self, table):
        wanted = {each.column.name for each in self.shown(table)}.union(self.labels(table))
        places = ",".join(dotted(column.oid) for column in self.mib.columns if column.name in wanted)
        pace = DELAYS[table.pace]
        return identified("item", self.walk_key(table), name=f"Walk of {table.name}Table", type="SNMP_AGENT",
                          snmp_oid=f"walk[{places}]", key=self.walk_key(table), delay=pace, history="0",
                          value_type="TEXT", trends="0", **self.switched(table))

    def prototype(self, table, metric):
        """Returns the prototype of a column's item in each row."""
        head = f"{table.item} {self.row_name(table)}"
        suffix = "[{#SNMPINDEX}]"
        place = f"{dotted(metric.column.oid)}.{{#SNMPINDEX}}"
        text_format = "1" if metric.column.type == "string" else "0"
        item = identified("item", metric.column.name, name=f"{head}: {metric.column.name}", type="DEPENDENT",
                          key=metric.column.name + suffix, delay="0", **self.value(metric),
                          preprocessing=[{"type": "SNMP_WALK_VALUE", "parameters": [place, text_format]}],
                          master_item={"key": self.walk_key(table)})
        if metric.kind == metrics.DECIMAL:
            item["preprocessing"].append({"type": "REGEX", "parameters": [r"^\s*([+-]?[0-9]+(\.[0-9]+)?)", r"\1"]})
        triggers = self.triggers(metric, suffix, head + ": ")
        # A trigger that uses two items belongs to the discovery rule, not to an item.
        if triggers and metric.name not in self.limit_of:
            item["trigger_prototypes"] = triggers
        return item

    def row_name(self, table):
        return " ".join([*map(macro, self.labels(table)[:1]), "(row {#SNMPINDEX})"])

    def discovery(self, table):
        shown = self.shown(table)
        named = self.labels(table) or [shown[0].column.name]
        parameters = [word for name in named
                      for word in (macro(name), dotted(self.columns[name].oid),
                                   "1" if self.columns[name].type == "string" else "0")]
        rule = identified("discovery", table.name, name=f"{table.name}Table", type="DEPENDENT",
                          key=f"tessera.discovery[{table.name}]", delay="0", lifetime="1d", description=ROW_NOTE,
                          **self.switched(table),
                          item_prototypes=[self.prototype(table, each) for each in shown],
                          master_item={"key": self.walk_key(table)},
                          preprocessing=[{"type": "SNMP_WALK_TO_JSON", "parameters": parameters}])
        head = f"{table.item} {self.row_name(table)}: "
        beside = [trigger for each in shown if each.name in self.limit_of
                  for trigger in self.triggers(each, "[{#SNMPINDEX}]", head)]
        return {**rule, "trigger_prototypes": beside} if beside else rule

    def value_maps(self):
        for convention in self.found.conventions.values():
            if any(each.convention is convention for each in self.metrics.all):
                yield identified("valuemap", convention.name, name=convention.name,
                                 mappings=[{"value": str(value.number), "newvalue": value.label}
                                           for value in convention.values])

    def file(self):
        tables = [table for table in self.mib.tables
                  if self.shown(table) and metrics.row_table(table, self.mib) is table]
        scalars = [self.scalar(each) for each in self.metrics.all if each.column.table is None]
        template = identified(
            "template", template=NAME, name=NAME, groups=[{"name": GROUP}],
            description=" ".join(self.found.module.paragraphs()[:1]),
            items=scalars + [self.walk(table) for table in tables],
            discovery_rules=[self.discovery(table) for table in tables], valuemaps=list(self.value_maps()))
        return yamlFile.document(HEAD, {"zabbix_export": {
            "version": VERSION, "template_groups": [identified("group", name=GROUP)], "templates": [template]}})
