"""Writes the Zabbix templates. Template contains what the formats for different versions share."""

import hashlib
import re

from codegen.model import metrics
from codegen.writers import yamlFile
from codegen.writers.output import dotted, instance

NAME = "Tessera storage array by SNMP"
GROUP = "Templates/SAN"
PRIORITIES = {"warning": "WARNING", "critical": "HIGH"}
HISTORY = {"FLOAT": {}, "TEXT": {"trends": "0"}}
ROW_NOTE = "The row number in the name is a position in the array's last answer."
HUMP = re.compile(r"(?<=[a-z])(?=[A-Z])")
STATES, TABLES, TEXTS, DISCOVERY, NO_DATA = (
    f"{{$TESSERA.{name}}}" for name in ("INTERVAL.STATES", "INTERVAL.TABLES", "INTERVAL.TEXTS", "INTERVAL.DISCOVERY",
                                        "NODATA"))
DELAYS = {"seconds": STATES, "minutes": TABLES}
INTERVALS = [
    (STATES, "1m", "How often states and readings are requested."),
    (TABLES, "3m", "The same for disks, folders, volumes, servers and other tables that the array lists slowly."),
    (TEXTS, "15m", "How often names, versions and messages are requested."),
    (DISCOVERY, "10m", "How often rows are looked for. Rows move, so names are up to this old."),
    (NO_DATA, "5m", "For how long there may be no answer."),
]
REACHED = "globalStatus"
AVAILABLE = "zabbix[host,snmp,available]"
AVAILABLE_MAP = {"0": "not available", "1": "available", "2": "unknown"}
# Zabbix represents a string that is not ASCII as pairs of hexadecimal digits.
DECODE = r"""function decoded(text) {
  if (!/^([0-9A-F]{2}\s+)*[0-9A-F]{2}\s*$/.test(text) || !/(^|\s)[89A-F]/.test(text)) return text;
  try { return decodeURIComponent(text.replace(/\s/g, "").replace(/../g, "%$&")); } catch (error) { return text; }
}
"""
DECODE_ROWS = """var rows = JSON.parse(value);
rows.forEach(function (row) {
  Object.keys(row).forEach(function (name) { if (name !== "{#SNMPINDEX}") row[name] = decoded(row[name]); });
});
return JSON.stringify(rows);"""
DECODE_TRAP = r"""return value.replace(/=((?:[0-9A-F]{2} )+)/g, function (all, text) {
  return "=" + decoded(text) + " ";
});"""


def script(body):
    return {"type": "JAVASCRIPT", "parameters": [DECODE + body]}


DECODE_TEXT = script("return decoded(value);")
FIRST_NUMBER = {"type": "REGEX", "parameters": [r"^\s*([+-]?[0-9]+(\.[0-9]+)?)", r"\1"]}


def uuid(*words):
    """Returns a UUID that never changes for the same words, in the format of version 4, which Zabbix requires."""
    digits = list(hashlib.sha256("/".join((NAME, *words)).encode()).hexdigest()[:32])
    digits[12], digits[16] = "4", "89ab"[int(digits[16], 16) % 4]
    return "".join(digits)


def identified(*words, **rest):
    return {"uuid": uuid(*words), **rest}


def macro(name):
    return "{#" + name.upper() + "}"


def threshold(metric, *words):
    """Returns the user macro of a limit."""
    name = HUMP.sub(".", metric.column.name.removeprefix("ts"))
    return "{$" + ".".join(("TESSERA", name, *words)).upper() + "}"


def tags(**values):
    return [{"tag": name, "value": value} for name, value in values.items()]


def number_text(numbers, function):
    """Returns a condition that is true for these values."""
    return " or ".join(f"{function}={number}" for number in numbers)


def function(key, name="last", *parameters):
    return f"{name}({','.join((f'/{NAME}/{key}', *parameters))})"


class Template:
    """A format of the template. A derived class has VERSION, GROUPS, the name of the list of groups, and
    walks(table), rows(table, macros) and source(table, metric): where values come from."""

    def __init__(self, snmp, all_metrics, watches):
        self.snmp, self.mib, self.found, self.metrics = snmp, snmp.mib, snmp.found, all_metrics
        self.columns = {column.name: column for column in self.mib.columns}
        self.watch_of = {each.metric.name: each for each in watches.watches}
        self.limit_of = {each.metric.name: each for each in watches.limits}

    # --- triggers

    def trigger(self, metric, severity, text, expression, **rest):
        scope = "capacity" if metric.name in self.limit_of else "availability"
        return identified("trigger", metric.column.name, severity, expression=expression, name=f"Tessera: {text}",
                          priority=PRIORITIES[severity], description=" ".join(metric.column.paragraphs()),
                          tags=tags(scope=scope), **rest)

    def triggers_of_watch(self, watch, key, what):
        for severity in ("critical", "warning"):
            values = watch.values(severity)
            if values:
                labels = " or ".join(value.label for value in values)
                yield self.trigger(watch.metric, severity, f"{what}{watch.metric.column.name} is {labels}",
                                   number_text([value.number for value in values], function(key)))

    def triggers_of_limit(self, limit, key, suffix, what):
        """Suppresses the warning while the reading is critical."""
        critical = []
        for severity in ("critical", "warning"):
            level = threshold(limit.metric, severity)
            lasting = f"{function(key, 'max', limit.wait)}<{level}"
            only_while = f" and {function(limit.only_while.column.name + suffix)}>0" if limit.only_while else ""
            made = self.trigger(limit.metric, severity, f"{what}{limit.metric.column.name} is below {level}",
                                lasting + only_while, recovery_mode="RECOVERY_EXPRESSION",
                                recovery_expression=f"{function(key)}>={threshold(limit.metric, severity, 'over')}")
            if critical:
                made["dependencies"] = critical
            critical = [{name: made[name] for name in ("name", "expression", "recovery_expression")}]
            yield made

    def triggers(self, metric, suffix="", what=""):
        found, key = [], metric.column.name + suffix
        if metric.name in self.watch_of:
            found += self.triggers_of_watch(self.watch_of[metric.name], key, what)
        if metric.name in self.limit_of:
            found += self.triggers_of_limit(self.limit_of[metric.name], key, suffix, what)
        return found

    def macros(self):
        for name, value, text in INTERVALS:
            yield {"macro": name, "value": value, "description": text}
        for limit in self.limit_of.values():
            for severity, (level, over) in limit.levels.items():
                about = f"{limit.metric.column.name}: {severity} below this."
                yield {"macro": threshold(limit.metric, severity), "value": str(level), "description": about}
                yield {"macro": threshold(limit.metric, severity, "over"), "value": str(over),
                       "description": f"{limit.metric.column.name}: the {severity} is over from this on."}

    # --- items

    def value(self, metric):
        """Returns the fields of an item that describe its value."""
        kind = "TEXT" if metric.kind == metrics.TEXT else "FLOAT"
        made = {"value_type": kind, **HISTORY[kind], "description": " ".join(metric.column.paragraphs())}
        if metric.column.units and kind == "FLOAT":
            made["units"] = "!" + metric.column.units.split(" (")[0]
        if metric.convention:
            made["valuemap"] = {"name": metric.convention.name}
        made["tags"] = tags(component=metric.column.table.item if metric.column.table else "array")
        return made

    def steps(self, metric, is_text):
        """Returns the preprocessing: decodes names, and extracts the number from a string that contains one."""
        found = [DECODE_TEXT] if is_text else []
        found += [FIRST_NUMBER] if metric.kind == metrics.DECIMAL else []
        return {"preprocessing": found} if found else {}

    def scalar(self, metric):
        """Returns the item of a scalar with its triggers, which use no other item."""
        is_text = metric.kind == metrics.TEXT
        item = identified("item", metric.column.name, name=metric.column.name, type="SNMP_AGENT",
                          snmp_oid=instance(metric.column), key=metric.column.name,
                          delay=TEXTS if is_text else STATES, **self.value(metric),
                          **self.steps(metric, metric.column.type == "string"))
        triggers = self.triggers(metric)
        if metric.column.name == REACHED:
            triggers.append(identified(
                "trigger", "no data", expression=f"{function(REACHED, 'nodata', NO_DATA)}=1", priority="HIGH",
                name="Tessera: the array does not answer", tags=tags(scope="availability"),
                description="Look whether the array can be reached and whether its SNMP service runs."))
        return {**item, "triggers": triggers} if triggers else item

    def availability(self):
        return identified("item", AVAILABLE, name="SNMP availability", type="INTERNAL", key=AVAILABLE,
                          valuemap={"name": "zabbix.host.available"}, tags=tags(component="array"))

    def trap(self, each):
        """Yields the items of notifications, in SNMPTT's format. Those about objects without an item have triggers."""
        key = f'snmptrap["{each.name}: "]'
        item = identified("item", each.name, name=each.name, type="SNMP_TRAP", key=key, delay="0", value_type="LOG",
                          trends="0", description=" ".join([each.description, *each.paragraphs()]),
                          preprocessing=[script(DECODE_TRAP)], tags=tags(component="notification"))
        if each.severity in PRIORITIES:
            said = f"{function(key, 'find', '', chr(34) + 'like' + chr(34), chr(34) + 'Over: ' + chr(34))}"
            item["triggers"] = [identified(
                "trigger", each.name, expression=f"{said}=0", name=f"Tessera: {each.description}", manual_close="YES",
                priority=PRIORITIES[each.severity], opdata="{ITEM.LASTVALUE1}", tags=tags(scope="notice"))]
        return item

    def other_traps(self):
        return identified("item", "snmptrap.fallback", name="Other notifications", type="SNMP_TRAP",
                          key="snmptrap.fallback", delay="0", value_type="LOG", trends="0",
                          tags=tags(component="notification"))

    # --- tables

    def labels(self, table):
        return self.metrics.plans[table.name].labels

    def shown(self, table):
        """Returns the metrics that share the rows of this table."""
        return [each for each in self.metrics.all
                if each.column.table and metrics.row_table(each.column.table, self.mib) is table]

    def tables(self):
        return [table for table in self.mib.tables
                if self.shown(table) and metrics.row_table(table, self.mib) is table]

    def switched(self, table):
        """Disables tables that are too long to be walked by default."""
        plans = self.metrics.plans
        return {} if plans[table.name].numbers == plans[None].numbers else {"status": "DISABLED"}

    def prototype(self, table, metric):
        """Returns the prototype of a column's item in each row."""
        head = f"{table.item} {self.row_name(table)}"
        suffix = "[{#SNMPINDEX}]"
        item = identified("item", metric.column.name, name=f"{head}: {metric.column.name}",
                          key=metric.column.name + suffix, **self.value(metric), **self.source(table, metric))
        triggers = self.triggers(metric, suffix, head + ": ")
        # A trigger that uses two items belongs to the discovery rule, not to an item.
        if triggers and metric.name not in self.limit_of:
            item["trigger_prototypes"] = triggers
        return item

    def row_name(self, table):
        return " ".join([*map(macro, self.labels(table)[:1]), "(row {#SNMPINDEX})"])

    def discovery(self, table):
        shown = self.shown(table)
        macros = [(macro(name), self.columns[name]) for name in self.labels(table) or [shown[0].column.name]]
        rule = identified("discovery", table.name, name=f"{table.name}Table", key=f"tessera.discovery[{table.name}]",
                          lifetime="1d", description=ROW_NOTE, **self.switched(table), **self.rows(table, macros),
                          item_prototypes=[self.prototype(table, each) for each in shown])
        head = f"{table.item} {self.row_name(table)}: "
        beside = [trigger for each in shown if each.name in self.limit_of
                  for trigger in self.triggers(each, "[{#SNMPINDEX}]", head)]
        return {**rule, "trigger_prototypes": beside} if beside else rule

    # --- the whole

    def value_maps(self):
        def made(name, pairs):
            return identified("valuemap", name, name=name,
                              mappings=[{"value": value, "newvalue": label} for value, label in pairs])

        for convention in self.found.conventions.values():
            if any(each.convention is convention for each in self.metrics.all):
                yield made(convention.name, [(str(value.number), value.label) for value in convention.values])
        yield made("zabbix.host.available", AVAILABLE_MAP.items())

    def items(self):
        yield from (self.scalar(each) for each in self.metrics.all if each.column.table is None)
        yield self.availability()
        yield from map(self.trap, self.snmp.traps.notifications)
        yield self.other_traps()

    def file(self):
        tables = self.tables()
        template = identified(
            "template", template=NAME, name=NAME, description=" ".join(self.found.module.paragraphs()[:1]),
            groups=[{"name": GROUP}], items=[*self.items(), *(each for table in tables for each in self.walks(table))],
            discovery_rules=[self.discovery(table) for table in tables],
            tags=tags(**{"class": "storage", "target": "tessera"}), macros=list(self.macros()),
            valuemaps=list(self.value_maps()))
        return yamlFile.document([f"For Zabbix {self.VERSION} and later."], {"zabbix_export": {
            "version": self.VERSION, self.GROUPS: [identified("group", name=GROUP)], "templates": [template]}})


class ObjectTemplate(Template):
    """Each value is requested by its OID. Zabbix puts many of them into one request."""

    VERSION, GROUPS = "6.0", "groups"

    def walks(self, table):
        return []

    def rows(self, table, macros):
        wanted = ",".join(f"{name},{dotted(column.oid)}" for name, column in macros)
        found = {"type": "SNMP_AGENT", "snmp_oid": f"discovery[{wanted}]", "delay": DISCOVERY}
        if any(column.type == "string" for _, column in macros):
            found["preprocessing"] = [script(DECODE_ROWS)]
        return found

    def source(self, table, metric):
        delay = TEXTS if metric.kind == metrics.TEXT else DELAYS[table.pace]
        return {"type": "SNMP_AGENT", "snmp_oid": f"{dotted(metric.column.oid)}.{{#SNMPINDEX}}", "delay": delay,
                **self.steps(metric, metric.column.type == "string")}


class WalkTemplate(Template):
    """One walk per table, from which its rows are discovered and every value is taken."""

    VERSION, GROUPS = "6.4", "template_groups"  # the first with walk[]

    def key(self, table):
        return f"tessera.walk[{table.name}]"

    def walks(self, table):
        """Whole tables: the places of their columns can be longer than Zabbix allows."""
        entries = {each.column.oid[:-1] for each in self.shown(table)}
        yield identified("item", self.key(table), name=f"Walk of {table.name}Table", type="SNMP_AGENT",
                         snmp_oid=f"walk[{','.join(map(dotted, sorted(entries)))}]", key=self.key(table),
                         delay=DELAYS[table.pace], history="0", value_type="TEXT", trends="0",
                         tags=tags(component=table.item), **self.switched(table))

    @staticmethod
    def form(column):
        return "1" if column.type == "string" else "0"  # UTF-8, or unchanged

    def rows(self, table, macros):
        parameters = [word for name, column in macros for word in (name, dotted(column.oid), self.form(column))]
        return {"type": "DEPENDENT", "delay": "0", "master_item": {"key": self.key(table)},
                "preprocessing": [{"type": "SNMP_WALK_TO_JSON", "parameters": parameters}]}

    def source(self, table, metric):
        place = f"{dotted(metric.column.oid)}.{{#SNMPINDEX}}"
        steps = [{"type": "SNMP_WALK_VALUE", "parameters": [place, self.form(metric.column)]}]
        return {"type": "DEPENDENT", "delay": "0", "master_item": {"key": self.key(table)},
                "preprocessing": steps + self.steps(metric, False).get("preprocessing", [])}
