"""The base class of tests about notifications: an array without failures, a daemon that notifies, and a receiver."""

from collections import namedtuple

from . import array, management, machine, systemTest, trapLists, traps
from .mib import api_kind
from .receiver import Receiver
from .traps import Event

# An object of the array with the event that reports its state.
Case = namedtuple("Case", "event kind index")

COMMUNITY = "watch.tower"
IDS = (11, -22, 2147483647)
COLD_START = Event((4, 4, 4), 0)
MARK = Event((1, 2, 3), 201, text="mark")
RECEIVED = "Received MGMTCommand_SPECIFIC"


# Only every Nth object of these kinds is kept, to make the tests faster.
SHORTENED = {"TsDisk": 10, "TsDiskConfiguration": 10, "TsVolume": 20, "TsServer": 5, "TsAlert": 50}


def healthy(preset):
    """Returns the objects of a preset, all Up, in shortened lists. A disk's name begins with its enclosure's index."""
    objects = array.preset(preset)
    for kind, step in SHORTENED.items():
        objects[kind] = objects[kind][::step]
    for each in (each for kind in objects.values() for each in kind if "Status" in each):
        each["Status"] = "Up"
    for number, disk in enumerate(objects["TsDisk"], 1):
        disk["Name"] = f"{disk['EnclosureIndex']}-{number:02}"
    return objects


class NotificationTest(systemTest.SharedSystemTest):
    PRESET = "typical"
    VERSION = 2
    LISTEN = "127.0.0.1"
    DESTINATION = "127.0.0.1"
    SETTINGS = {}  # additional settings of the daemon

    @classmethod
    def begin(cls):
        super().begin()
        cls.receiver = Receiver(cls.LISTEN)
        machine.configure_daemon(trapsEnabled="yes", trapDest=cls.DESTINATION, trapPort=cls.receiver.port,
                                 trapCommun=COMMUNITY, trapVer=cls.VERSION, **cls.SETTINGS)

    @classmethod
    def launch(cls):
        cls.array.start(objects=cls.objects())
        cls.daemon.start()
        cls.expect(COLD_START)

    @classmethod
    def objects(cls):
        return healthy(cls.PRESET)

    @classmethod
    def end(cls):
        try:
            super().end()
        finally:
            cls.receiver.close()

    # --- the array

    @classmethod
    def change(cls, kind, index, **values):
        """Sets attributes of an object, without further effects."""
        for attribute, value in values.items():
            cls.array.set(kind, index, attribute, value)

    # --- cases: kinds of objects and components with their events

    @classmethod
    def object_case(cls, number, place, text=""):
        """place: in the array's list of this kind; -1 for the last."""
        kind = api_kind(trapLists.OBJECTS[number].kind)
        if number == 211:
            return Case(Event(IDS, number, 1, text=text), kind, "1")
        dump = cls.array.dump()
        element = dump[kind][place]
        numbers = traps.arguments(dump, number, 0, element)
        return Case(Event(IDS, number, *numbers, text=text), kind, element["Index"])

    @classmethod
    def component_case(cls, number, component):
        """Of the first controller or enclosure, and the first of its components."""
        kind, dump = api_kind(trapLists.COMPONENTS[number, component].kind), cls.array.dump()
        owner, tag = ("TsController", "ControllerIndex") if number == 204 else ("TsEnclosure", "EnclosureIndex")
        element = next(each for each in dump[kind] if each[tag] == dump[owner][0]["Index"])
        numbers = traps.arguments(dump, number, component, element)
        return Case(Event(IDS, number, *numbers), kind, element["Index"])

    @classmethod
    def cases(cls):
        """One for every kind."""
        return ([cls.object_case(number, 0) for number in trapLists.OBJECTS] +
                [cls.component_case(number, component) for number, component in trapLists.COMPONENTS])

    # --- events and their notifications

    @staticmethod
    def send(*events):
        """Sends events over one connection."""
        management.send(*(management.trap(event.command()) for event in events))

    @classmethod
    def expect(cls, event):
        """Checks that the next notification is that of the event, and returns it."""
        got = cls.receiver.take()
        if traps.summary_of(got) != event.summary():
            raise AssertionError(f"expected {event}, received {got}")
        return got

    @classmethod
    def send_and_expect(cls, event):
        cls.send(event)
        return cls.expect(event)
