"""Writes the modules of the Prometheus SNMP exporter."""

from codegen.model import metrics
from codegen.model import moduleNames as names
from codegen.writers import yamlFile
from codegen.writers.output import dotted, instance

OLD_HEAD = ["", "For snmp_exporter up to 0.22, which Debian 12 has."]
NEW_HEAD = ["", "For snmp_exporter 0.23 and later, where communities are under auths."]

TYPES = {metrics.GAUGE: "gauge", metrics.STATES: "EnumAsStateSet", metrics.INFO: "EnumAsInfo",
         metrics.TEXT: "DisplayString", metrics.DECIMAL: "DisplayString"}
# The array's master agent returns at most 20 objects per response. While other managers query the array as well,
# responses can take seconds.
TRANSPORT = {"max_repetitions": 20, "retries": 2, "timeout": "10s"}
DECIMAL = [{"regex": r"^\s*([+-]?[0-9]+(?:\.[0-9]+)?)", "value": "$1"}]
AUTH_V2 = {"community": "public", "version": 2}
AUTH_V3 = {"version": 3, "username": "monitor", "security_level": "authPriv", "auth_protocol": "SHA256",
           "password": "signing passphrase", "priv_protocol": "AES", "priv_password": "encrypting passphrase"}
SCRAPE_HEAD = ["", "A whole configuration of Prometheus, to be taken as it is or as an example: put the names of",
               "your arrays in place of array1. The exporter runs beside Prometheus."]
EXPORTER = "127.0.0.1:9116"
# The array becomes a parameter of the request to the exporter.
RELABEL = [{"source_labels": ["__address__"], "target_label": "__param_target"},
           {"source_labels": ["__param_target"], "target_label": "instance"},
           {"target_label": "__address__", "replacement": EXPORTER}]


def help_of(column):
    first = column.paragraphs()[0].split(". ")[0].rstrip(".")
    units = f" In {column.units}." if column.units else ""
    return f"{first}.{units} - {dotted(column.oid)}"


class Exporter:
    def __init__(self, snmp, all_metrics):
        self.mib, self.metrics = snmp.mib, all_metrics
        self.columns = {column.name: column for column in self.mib.columns}

    def lookup(self, rows, name):
        column = self.columns[name]
        return {"labels": list(rows), "labelname": name, "oid": dotted(column.oid),
                "type": "DisplayString" if column.type == "string" else "gauge"}

    def lookups(self, table):
        return metrics.lookups(table, self.mib, self.metrics.plans) if table else []

    def metric(self, each, lookups):
        table = each.column.table
        made = {"name": each.column.name, "oid": dotted(each.column.oid), "type": TYPES[each.kind],
                "help": help_of(each.column)}
        if table:
            made["indexes"] = [{"labelname": names.row(one), "type": "gauge"}
                               for one in metrics.indexes(table, self.mib)]
            if lookups:
                made["lookups"] = [self.lookup(*one) for one in lookups]
        if each.convention:
            made["enum_values"] = {value.number: value.label for value in each.convention.values}
        if each.kind == metrics.DECIMAL:
            made["regex_extracts"] = {"": DECIMAL}
        return made

    def module(self, name):
        light = self.metrics.modules[name].columns
        shown = [each for each in self.metrics.all if each.column.name in light or not light and each.module == name]
        lookups = {each.name: [] if light else self.lookups(each.column.table) for each in shown}
        # Requests the columns that are shown, and those that name their rows.
        wanted = {each.column.name for each in shown if each.column.table}
        wanted.update(column for found in lookups.values() for _, column in found)
        made = {"walk": [dotted(column.oid) for column in self.mib.columns if column.name in wanted],
                "get": [instance(each.column) for each in shown if not each.column.table],
                "metrics": [self.metric(each, lookups[each.name]) for each in shown], **TRANSPORT}
        return {key: value for key, value in made.items() if value}

    def about(self):
        return [f"{name}: {module.text}" for name, module in self.metrics.modules.items()]

    def old_form(self, auth):
        """Returns the older format, in which each module contains the credentials and the version."""
        own = {"version": auth["version"], "auth": {key: value for key, value in auth.items() if key != "version"}}
        return yamlFile.document(OLD_HEAD + self.about(),
                                 {name: {**self.module(name), **own} for name in self.metrics.modules})

    def new_form(self):
        modules = {name: self.module(name) for name in self.metrics.modules}
        return yamlFile.document(NEW_HEAD + self.about(),
                                 {"auths": {"public_v2": AUTH_V2, "monitor_v3": AUTH_V3}, "modules": modules})

    def scrapes(self):
        jobs = [{"job_name": name, "scrape_interval": module.interval, "scrape_timeout": module.timeout(),
                 "metrics_path": "/snmp", "params": {"module": [name]}, "static_configs": [{"targets": ["array1"]}],
                 "relabel_configs": RELABEL}
                for name, module in self.metrics.modules.items() if not module.columns]
        return yamlFile.document(SCRAPE_HEAD, {"rule_files": ["tessera.rules.yml"], "scrape_configs": jobs})
