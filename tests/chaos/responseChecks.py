"""Checks responses against the values that are allowed."""

from harness import mib
from harness.ber import EXCEPTIONS

from . import violations
from .history import column_of
from .violations import Violation

ABSENT = tuple(EXCEPTIONS.values())


def in_new_form(oid):
    """Returns a name under the current enterprise number."""
    return mib.ENTERPRISE + oid[len(mib.OLD_ENTERPRISE):] if oid.startswith(mib.OLD_ENTERPRISE + ".") else oid


def is_own(oid):
    """Returns whether the daemon serves this instance."""
    return oid.startswith(mib.ENTERPRISE + ".2.") or oid in SYSTEM


SYSTEM = {mib.scalar(name) for name in ("sysContact", "sysName", "sysLocation")}


class ResponseChecks:
    def __init__(self, history, log):
        self.history = history
        self.log = log

    def add(self, kind, client, exchange, text, oid=None, read=None):
        self.log.add(Violation(kind, client, exchange.sent, exchange.ended, text, oid, read))

    def value(self, client, exchange, binding):
        oid = in_new_form(binding.oid)
        if not is_own(oid):
            return
        read = None if binding.type in ABSENT else (binding.type, binding.value)
        self.log.count(client, "values")
        if not self.history.allows(oid, read, exchange.sent, exchange.ended):
            self.add(violations.VALUE, client, exchange, f"{name_of(oid)} is {read}", oid, read)

    def got(self, client, exchange, requested):
        """Checks the response to a GET without error: the requested names, with allowed values."""
        found = exchange.response.bindings
        if [binding.oid for binding in found] != list(requested):
            self.add(violations.ORDER, client, exchange, f"requested {requested}, got {[each.oid for each in found]}")
            return
        for binding in found:
            self.value(client, exchange, binding)

    def followed(self, client, exchange, before, binding):
        """Checks a binding that must follow a name. Returns whether it does."""
        if binding.type == "endOfMibView":
            return True
        if mib.arcs(binding.oid) <= mib.arcs(before):
            self.add(violations.ORDER, client, exchange, f"{binding.oid} follows {before}")
            return False
        self.value(client, exchange, binding)
        return True

    def got_bulk(self, client, exchange, requested, non_repeaters):
        """Checks the response to a GETBULK without error: rows of successors, each column in order."""
        found = exchange.response.bindings
        single = min(max(non_repeaters, 0), len(requested))
        columns = len(requested) - single
        before = list(requested)
        for place, binding in enumerate(found):
            column = place if place < single else single + (place - single) % columns if columns else None
            if column is None:
                self.add(violations.ORDER, client, exchange, f"{len(found)} bindings for {len(requested)} single ones")
                return
            if not self.followed(client, exchange, before[column], binding):
                return
            before[column] = binding.oid

    def complete(self, client, exchange, seen):
        """Checks that a walk has returned every instance. exchange: its times."""
        for oid in self.history.constant_instances(exchange.sent, exchange.ended):
            if oid not in seen and oid.startswith(mib.ENTERPRISE + "."):
                if not self.history.allows(oid, None, exchange.sent, exchange.ended):
                    self.add(violations.MISSING, client, exchange, f"{name_of(oid)} is missing in a walk", oid)

    # --- at the end

    def confirmed(self, kind):
        """Returns the unexcused violations of a kind."""
        return [each for each in self.log.kept[kind] if not self.is_excused(each)]

    def is_excused(self, violation):
        if violation.kind in (violations.VALUE, violations.MISSING):
            return self.history.allows(violation.oid, violation.read, violation.sent, violation.ended)
        if violation.kind in (violations.UNANSWERED, violations.SLOW, violations.GENERR):
            return self.history.timeline.is_disturbed("requests", violation.sent, violation.ended)
        return False


def name_of(oid):
    column = column_of(oid)
    return oid if column is None else column.name + oid[len(".".join(map(str, column.oid))):]
