"""Events of the array, and summaries of the notifications about them."""

from collections import namedtuple

from . import mib
from .trapLists import COMPONENTS

TRAP_OID = "1.3.6.1.6.3.1.1.4.1.0"
COLD_START = "1.3.6.1.6.3.1.1.5.1"
NOTIFICATIONS = mib.ENTERPRISE + ".251"


class Event(namedtuple("Event", "ids number a b c d text", defaults=(0, 0, 0, 0, ""))):
    def command(self):
        return " ".join(map(str, (*self.ids, self.number, self.a, self.b, self.c, self.d))) + " " + self.text

    def summary(self):
        """Returns the expected summary of its notification; see summary_of."""
        if self.number < 200:
            return (self.number,)
        if self.number == 201:
            return self.number, self.text
        cleared = "Alert Cleared - " if self.d == 5 else ""
        return self.number, ",".join(map(str, self.ids)), cleared + self.text.rpartition("@@@")[2]


def arguments(objects, number, component, element):
    """Returns the first three arguments of the event about an object. component: 0 for whole objects."""
    def row(found):
        return [each.get("Index") for each in found].index(element.get("Index")) + 1

    if number == 211:
        return 1, 0, 0
    if not component:
        return row(objects["TsControllerCacheCard"]) if number == 210 else int(element["Index"]), 0, 0
    siblings = objects[mib.api_kind(COMPONENTS[number, component].kind)]
    if number == 204:
        parent = [each["Index"] for each in objects["TsController"]].index(element["ControllerIndex"]) + 1
        siblings = [each for each in siblings if each["ControllerIndex"] == element["ControllerIndex"]]
    else:
        parent = int(element["EnclosureIndex"])
        siblings = [each for each in siblings if each["EnclosureIndex"] == element["EnclosureIndex"]]
    return parent, component, int(element["Index"]) - 1 if (number, component) == (204, 1) else row(siblings)


def summary_of(notification):
    """Returns the number of a notification, followed by the ids and the string of the event if it contains them."""
    found = {each.oid: each.value for each in notification.bindings}
    identity = found.get(TRAP_OID, f"{NOTIFICATIONS}.0.{notification.specific}")
    number = 0 if identity == COLD_START else int(identity.rpartition(".")[2])
    if number < 200:
        return (number,)
    if number == 201:
        return number, found[mib.scalar("trapMiscAlertText")].decode()
    return number, found[mib.scalar("trapEventId")].decode(), found.get(mib.scalar("trapAlertText"), b"").decode()
