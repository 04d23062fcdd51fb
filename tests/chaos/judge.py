"""Holds answers against what may be answered."""

from harness import mib

from . import ledger
from .history import column_of
from .ledger import Doubt
from .snmp import EXCEPTIONS

ABSENT = tuple(EXCEPTIONS.values())


def in_new_form(oid):
    """The instance of the store that a name in either form means."""
    return mib.ENTERPRISE + oid[len(mib.OLD_ENTERPRISE):] if oid.startswith(mib.OLD_ENTERPRISE + ".") else oid


def is_own(oid):
    """Whether the daemon answers for this instance."""
    return oid.startswith(mib.ENTERPRISE + ".2.") or oid in SYSTEM


SYSTEM = {mib.scalar(name) for name in ("sysContact", "sysName", "sysLocation")}


class Judge:
    def __init__(self, history, book):
        self.history = history
        self.book = book

    def doubt(self, kind, client, exchange, text, oid=None, read=None):
        self.book.doubt(Doubt(kind, client, exchange.sent, exchange.ended, text, oid, read))

    def value(self, client, exchange, binding):
        oid = in_new_form(binding.oid)
        if not is_own(oid):
            return
        read = None if binding.type in ABSENT else (binding.type, binding.value)
        self.book.count(client, "values")
        if not self.history.allows(oid, read, exchange.sent, exchange.ended):
            self.doubt(ledger.VALUE, client, exchange, f"{name_of(oid)} is {read}", oid, read)

    def got(self, client, exchange, asked):
        """The answer to a GET without error: the names that were asked for, with values that may be."""
        found = exchange.response.bindings
        if [binding.oid for binding in found] != list(asked):
            self.doubt(ledger.ORDER, client, exchange, f"asked for {asked}, got {[each.oid for each in found]}")
            return
        for binding in found:
            self.value(client, exchange, binding)

    def followed(self, client, exchange, before, binding):
        """A binding that must come after a name. Whether it does."""
        if binding.type == "endOfMibView":
            return True
        if mib.arcs(binding.oid) <= mib.arcs(before):
            self.doubt(ledger.ORDER, client, exchange, f"{binding.oid} follows {before}")
            return False
        self.value(client, exchange, binding)
        return True

    def got_bulk(self, client, exchange, asked, non_repeaters):
        """The answer to a GETBULK without error: rows of successors, each column in its order."""
        found = exchange.response.bindings
        single = min(max(non_repeaters, 0), len(asked))
        columns = len(asked) - single
        before = list(asked)
        for place, binding in enumerate(found):
            column = place if place < single else single + (place - single) % columns if columns else None
            if column is None:
                self.doubt(ledger.ORDER, client, exchange, f"{len(found)} bindings for {len(asked)} single ones")
                return
            if not self.followed(client, exchange, before[column], binding):
                return
            before[column] = binding.oid

    def complete(self, client, exchange, seen):
        """What a whole walk must have shown. exchange: its times."""
        for oid in self.history.steady(exchange.sent, exchange.ended):
            if oid not in seen and oid.startswith(mib.ENTERPRISE + "."):
                if not self.history.allows(oid, None, exchange.sent, exchange.ended):
                    self.doubt(ledger.MISSING, client, exchange, f"{name_of(oid)} is missing in a walk", oid)

    # --- the last word

    def faulty(self, kind):
        """The doubts of a kind that nothing explains."""
        return [doubt for doubt in self.book.all(kind) if not self.is_explained(doubt)]

    def is_explained(self, doubt):
        if doubt.kind in (ledger.VALUE, ledger.MISSING):
            return self.history.allows(doubt.oid, doubt.read, doubt.sent, doubt.ended)
        if doubt.kind in (ledger.UNANSWERED, ledger.SLOW, ledger.REFUSED):
            return self.history.timeline.is_disturbed("requests", doubt.sent, doubt.ended)
        return False


def name_of(oid):
    column = column_of(oid)
    return oid if column is None else column.name + oid[len(".".join(map(str, column.oid))):]
