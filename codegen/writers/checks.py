"""The checks of the plugin check_tessera, which the files for Nagios and for Icinga share."""

from dataclasses import dataclass

from codegen.model import watches
from codegen.writers.output import dotted

PLUGIN = "check_tessera"
# A string whose GET tests the whole chain, and which is never a problem.
REACHED = "selfTestVersion"
SEVERITIES = ("ok", *watches.TROUBLES)
UNITS = {"percent": "%"}


@dataclass
class Check:
    """options: of the plugin, by name, except those for the host and the instance."""
    column: object
    options: dict

    @property
    def name(self):
        return f"tessera_{self.column.name}"

    def about(self):
        return self.column.paragraphs()[0]

    def is_single(self):
        """Returns whether every array has exactly one such object."""
        table = self.column.table
        return table is None or (not table.parent and table.rows == 1)

    def instance(self):
        """Of a single object."""
        return "1" if self.column.table else "0"


class Checks:
    def __init__(self, snmp, metrics, all_watches):
        self.columns = {column.name: column for column in snmp.mib.columns}
        self.plans, self.watches = metrics.plans, all_watches

    def check(self, column, **options):
        labels = self.plans[column.table.name].labels if column.table else []
        name = {"name": dotted(self.columns[labels[0]].oid)} if labels else {}
        return Check(column, {"label": column.name, "oid": dotted(column.oid), **name, **options})

    def of_watch(self, watch):
        states = {severity: ",".join(f"{value.label}={value.number}" for value in watch.values(severity))
                  for severity in SEVERITIES}
        return self.check(watch.metric.column, **{severity: words for severity, words in states.items() if words})

    def of_limit(self, limit):
        levels = "/".join(str(limit.levels[severity][0]) for severity in watches.TROUBLES)
        only_while = {"while": dotted(limit.only_while.column.oid)} if limit.only_while else {}
        units = limit.metric.column.units
        return self.check(limit.metric.column, below=levels, **only_while, unit=UNITS.get(units, units))

    def all(self):
        yield self.check(self.columns[REACHED])
        yield from map(self.of_watch, self.watches.watches)
        yield from map(self.of_limit, self.watches.limits)
