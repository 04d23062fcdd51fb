"""The frame of the files about notifications: an array in good health, a daemon that notifies, a receiver."""

from collections import namedtuple

from . import array, management, machine, story, trapLists, traps
from .mib import api_kind
from .receiver import Receiver
from .traps import Event

# An object of the array with the event that reports it.
Case = namedtuple("Case", "event kind index")

COMMUNITY = "watch.tower"
IDS = (11, -22, 2147483647)
COLD_START = Event((4, 4, 4), 0)
MARK = Event((1, 2, 3), 201, text="mark")
RECEIVED = "Received MGMTCommand_SPECIFIC"


# Every so manieth object is enough, and makes the tests quicker.
SHORTENED = {"TsDisk": 10, "TsDiskConfiguration": 10, "TsVolume": 20, "TsServer": 5, "TsAlert": 50}


def healthy(preset):
    """The objects of a preset, all Up; of long lists a few. A disk's name begins with the index of its enclosure."""
    objects = array.preset(preset)
    for kind, step in SHORTENED.items():
        objects[kind] = objects[kind][::step]
    for each in (each for kind in objects.values() for each in kind if "Status" in each):
        each["Status"] = "Up"
    for number, disk in enumerate(objects["TsDisk"], 1):
        disk["Name"] = f"{disk['EnclosureIndex']}-{number:02}"
    return objects


class TrapStory(story.SharedStory):
    PRESET = "typical"
    VERSION = 2
    LISTEN = "127.0.0.1"
    DESTINATION = "127.0.0.1"
    SETTINGS = {}  # further ones of the daemon

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
        """Sets attributes of an object, and nothing but these."""
        for attribute, value in values.items():
            cls.array.set(kind, index, attribute, value)

    # --- cases: every kind of object and component with its event

    @classmethod
    def object_case(cls, number, place, text=""):
        """place: in the array's list of the kind; the last for -1."""
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

    # --- events and what comes of them

    @staticmethod
    def tell(*events):
        """Over one connection."""
        management.send(*(management.trap(event.command()) for event in events))

    @classmethod
    def expect(cls, event):
        """The next notification is that of the event. Returns it."""
        got = cls.receiver.take()
        if traps.said_by(got) != event.says():
            raise AssertionError(f"{event}: another notification: {got}")
        return got

    @classmethod
    def tell_and_expect(cls, event):
        cls.tell(event)
        return cls.expect(event)
