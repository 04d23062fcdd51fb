"""Writes the configuration of SNMPTT: a log line and a severity for each notification."""

from codegen.writers.output import dotted, notice

HEAD = notice("data/mib and data/monitoring", "#") + """\
#
# Start snmptrapd with -On -Oe, so that it passes on numbers, and set multiple_event = 1 in snmptt.ini. Of the EVENTs of
# a notification, one matches: recovery, or the severity of the state in the notification.
"""

NAMES = {"ok": "NORMAL", "warning": "WARNING", "critical": "CRITICAL"}
CLEARED = 1


class Events:
    """lead: prefix of each line, for a program that reads the log."""

    def __init__(self, snmp, watches, lead=""):
        self.snmp, self.watches, self.lead = snmp, watches, lead
        self.base = snmp.events()

    def event(self, each, severity, head, matches):
        """matches: (place of the variable, what its value must match)."""
        shown = " ".join(f"{column.name}=${place}" for place, column in enumerate(each.columns, 1))
        lines = [f'EVENT {each.name} .{dotted((*self.base, 0, each.number))} "Tessera" {NAMES[severity]}',
                 f"FORMAT {self.lead}{each.name}: {head}{each.description} {shown}"]
        if matches:
            lines += ["MATCH MODE=and"] + [f"MATCH ${place}: {value}" for place, value in matches]
        return "\n".join(lines + ["SDESC", *each.paragraphs(), "EDESC"]) + "\n"

    def place(self, each, column):
        return each.columns.index(column) + 1

    def severities(self, column):
        """Returns {severity: numbers} of the states of a column, from its watch line or its convention."""
        convention = self.snmp.convention(column)
        own = next((watch.severities for watch in self.watches.watches if watch.metric.column is column),
                   self.watches.severities[convention.name])
        grouped = {}
        for value in convention.values:
            # A notification carries the type enumeration as an unsigned number.
            grouped.setdefault(own[value.label], []).append(value.number % 2**32)
        return grouped

    def of_notification(self, each):
        state = next((column for column in each.columns if column.name == "trapAlertState"), None)
        column = each.state_column()
        if state is None:
            yield self.event(each, each.severity, "", [])
            return
        cleared = (self.place(each, state), f"({exactly([CLEARED])})")
        lasts = (self.place(each, state), f"!({exactly([CLEARED])})")
        yield self.event(each, "ok", "Over: ", [cleared])
        if column is None:
            yield self.event(each, each.severity, "", [lasts])
            return
        grouped = self.severities(column)
        critical = exactly(grouped.get("critical", []))
        if "critical" in grouped:
            yield self.event(each, "critical", "", [lasts, (self.place(each, column), f"({critical})")])
        # Also warnings: an object that is up although the array reports a problem, and numbers of later versions.
        others = [(self.place(each, column), f"!({critical})")] if "critical" in grouped else []
        yield self.event(each, "warning", "", [lasts, *others])

    def plain(self, number):
        return (f'EVENT tesseraText{number} .{dotted((*self.base, 0, number))} "Tessera" INFORMATIONAL\n'
                f"FORMAT {self.lead}tesseraText{number}: The array says: $1\n")

    def file(self):
        events = [event for each in self.snmp.traps.notifications for event in self.of_notification(each)]
        return "\n".join([HEAD, *map(self.plain, self.snmp.traps.plain), *events])


def exactly(numbers):
    """Returns a pattern that matches one of these numbers, also in parentheses after a name, as in up(1)."""
    return "|".join(f"^{number}$|\\({number}\\)$" for number in numbers)
