"""Events that are refused: each with its line in the log, and no notification."""

import unittest

from harness import story
from harness.trapStory import TrapStory
from harness.traps import Event

IDS = (5, 6, 7)
BIG = 99999

# Events that are refused whatever the array has, by trap number: arguments a, b, c, and the line.
REFUSED = {
    202: (((0, 0, 0), "no disk index passed"), ((2001, 0, 0), "disk index too large: 2001"),
          ((-1, 0, 0), "disk index too large: -1"), ((1999, 0, 0), "could not find disk index: trapArgA 1999")),
    203: (((0, 0, 0), "no controller index passed"),
          ((BIG, 0, 0), "unrecognized controller index passed from lumivant-app: 99999"),
          ((-1, 0, 0), "unrecognized controller index passed from lumivant-app: -1")),
    204: (((0, 2, 1), "no controller index passed"), ((3, 2, 1), "controller index too large: 3"),
          ((-1, 2, 1), "controller index too large: -1"), ((1, 2, 0), "component index is zero"),
          ((1, 9, 0), "component index is zero"), ((1, 1, BIG), "could not find fan component index: trapArgC 99999"),
          ((1, 1, 0), "could not find fan component index: trapArgC 0"),
          ((1, 2, 5), "power component index too large: trapArgC: 5, cols[COLID_tsCtlrPowerStatus].maxNumOfRows: 4"),
          ((1, 2, -1), "power component index too large: trapArgC: -1, cols[COLID_tsCtlrPowerStatus].maxNumOfRows: 4"),
          ((1, 2, 4), "power component does not exist: trapArgC: 4"),
          ((1, 3, 8),
           "tempsensor component index too large: trapArgC: 8, cols[COLID_tsCtlrTempStatus].maxNumOfRows: 7"),
          ((1, 3, 7), "tempsensor component does not exist: trapArgC: 7"),
          ((1, 4, 11),
           "voltagesensor component index too large: trapArgC: 11, cols[COLID_tsCtlrVoltageStatus].maxNumOfRows: 10"),
          ((1, 4, 10), "voltagesensor component does not exist: trapArgC: 10"),
          ((1, 0, 1), "unknown H/W Comp Num passed fron lumivant-app: 0"),
          ((1, 5, 1), "unknown H/W Comp Num passed fron lumivant-app: 5"),
          ((1, -2, 1), "unknown H/W Comp Num passed fron lumivant-app: -2")),
    205: (((0, 0, 0), "no enclosure index passed"), ((BIG, 0, 0), "could not find encl index: trapArgA 99999"),
          ((-1, 0, 0), "could not find encl index: trapArgA -1")),
    206: (((0, 1, 1), "no enclosure index passed"), ((BIG, 1, 1), "could not find encl index: trapArgA 99999"),
          (("encl", 1, 0), "component index is zero"),
          (("encl", 1, 7),
           "encl fan component index too large: trapArgC: 7, cols[COLID_tsCtlrFanStatus].maxNumOfRows: 6"),
          (("encl", 1, 6), "encl fan component does not exist: trapArgC: 6"),
          (("encl", 2, 5),
           "encl power component index too large: trapArgC: 5, cols[COLID_tsEnclPowerStatus].maxNumOfRows: 4"),
          (("encl", 2, 4), "encl power component does not exist: trapArgC: 4"),
          (("encl", 3, 23),
           "encl temp-sensor component index too large: trapArgC: 23, cols[COLID_tsEnclTempStatus].maxNumOfRows: 22"),
          (("encl", 3, 22), "encl temp-sensor component does not exist: trapArgC: 22"),
          (("encl", 5, 3),
           "encl iomodule component index too large: trapArgC: 3, cols[COLID_tsEnclIoModStatus].maxNumOfRows: 2"),
          (("encl", 5, 2), "iomodule component does not exist: trapArgC: 2"),
          (("encl", 6, 2),
           "encl audiblealarm component index too large: trapArgC: 2, cols[COLID_tsEnclAlarmStatus].maxNumOfRows: 1"),
          (("encl", 6, 1), "audiblealarm component does not exist: trapArgC: 1"),
          (("encl", 4, 1), "unknown H/W Comp Num passed fron lumivant-app: 4"),
          (("encl", 7, 1), "unknown H/W Comp Num passed fron lumivant-app: 7")),
    207: (((0, 0, 0), "no disk folder index passed"), ((BIG, 0, 0), "could not find diskfolder index: trapArgA 99999")),
    208: (((0, 0, 0), "no volume index passed"), ((-1, 0, 0), "could not find volume index: trapArgA -1")),
    209: (((0, 0, 0), "no server index passed"), ((BIG, 0, 0), "could not find server index: trapArgA 99999")),
    210: (((0, 0, 0), "no cache index passed"), ((3, 0, 0), "cache index too large: 3"),
          ((-1, 0, 0), "cache index too large: -1")),
    211: (((0, 0, 0), "controller index passed is not 1 or 2: 0"),
          ((3, 0, 0), "controller index passed is not 1 or 2: 3"),
          ((-1, 0, 0), "controller index passed is not 1 or 2: -1")),
    212: (((0, 0, 0), "no ups index passed"), ((BIG, 0, 0), "could not find ups index: trapArgA 99999")),
    213: (((1, 0, 1), "no scsi initiator device type passed"), ((1, 1, 0), "no scsi initiator device status passed"),
          ((2000, 1, 1), "disk does not exist: 2000"), ((-1, 1, 1), "disk does not exist: -1"))}
UNKNOWN_NUMBERS = (-1, 9, 99, 102, 199, 214, 2147483647)

# Kinds of which the last object has no status from the start, and those from which it is taken in a test.
WITHOUT_STATUS = (("TsDisk", 202, "disk"), ("TsDiskFolder", 207, "diskfolder"), ("TsVolume", 208, "volume"),
                  ("TsServer", 209, "server"))
LOSING_STATUS = (("TsController", 203, "ctlr"), ("TsEnclosure", 205, "encl"), ("TsUps", 212, "ups"))


class Refusals(TrapStory):
    @classmethod
    def objects(cls):
        objects = super().objects()
        for kind, _, _ in WITHOUT_STATUS:
            del objects[kind][-1]["Status"]
        enclosure = objects["TsEnclosure"][0]["Index"]
        for kind, row in (("TsEnclosureIoModule", -1), ("TsEnclosureAudibleAlarm", 0)):
            del [each for each in objects[kind] if each["EnclosureIndex"] == enclosure][row]["Status"]
        objects["TsDisk"][2]["Name"] = "77-1"
        return objects

    def first_enclosure(self):
        return int(self.array.first("TsEnclosure"))

    def test_refusals(self):
        for number, rows in REFUSED.items():
            for (a, b, c), line in rows:
                event = Event(IDS, number, self.first_enclosure() if a == "encl" else a, b, c, text="@@@refused")
                with self.subTest(event=event):
                    self.expect_refusal(event, line)
        for number in UNKNOWN_NUMBERS:
            with self.subTest(number=number):
                self.expect_refusal(Event(IDS, number, 1, 1, 1), f"unknown trapNum passed fron lumivant-app: {number}")

    def test_disks_of_unknown_enclosures(self):
        index = int(self.array.dump()["TsDisk"][2]["Index"])
        for event in (Event(IDS, 202, index), Event(IDS, 213, 3, 1, 1)):
            self.expect_refusal(event, "could not find encl index: enclNum 77")

    def test_objects_without_a_status(self):
        for kind, number, word in WITHOUT_STATUS:
            with self.subTest(kind=kind):
                self.expect_refusal(Event(IDS, number, int(self.index_of(kind, -1))), f"{word} does not exist: ")
        for kind, number, word in LOSING_STATUS:
            index = self.index_of(kind, -1)
            with self.subTest(kind=kind):
                self.array.tell("unset", kind, index, "Status")
                self.expect_refusal(Event(IDS, number, int(index)), f"{word} does not exist: ")
                self.refuse_components_of(kind, index, f"{word} does not exist: ")
                self.change(kind, index, Status="Up")
        card = "TsControllerCacheCard"
        for kind, index, attribute, number, line in (
                (card, self.index_of(card, -1), "Status", 210, "cache does not exist: "),
                ("Tessera", "1", "PortsBalanced", 211, "tsTsPortsBal is not cachedt: ")):
            before = self.array.get(kind, index, attribute)
            self.array.tell("unset", kind, index, attribute)
            self.expect_refusal(Event(IDS, number, 2), line)
            self.change(kind, index, **{attribute: before})

    def refuse_components_of(self, kind, index, line):
        if kind == "TsController":
            self.expect_refusal(Event(IDS, 204, 2, 2, 1), line)
        elif kind == "TsEnclosure":
            self.expect_refusal(Event(IDS, 206, int(index), 2, 1), line)

    def test_components_of_parents_that_are_not_up(self):
        for kind, event, line in (("TsController", Event(IDS, 204, 1, 2, 1), "ctlr is not up: "),
                                  ("TsEnclosure", Event(IDS, 206, self.first_enclosure(), 2, 1), "encl is not up: ")):
            for status in ("Down", "Degraded"):
                self.change(kind, self.array.first(kind), Status=status)
                self.expect_refusal(event, line)
            self.change(kind, self.array.first(kind), Status="Up")
            self.tell_and_expect(event)

    def test_a_component_without_a_status(self):
        fan = self.index_of("TsControllerFanSensor", 1)
        self.array.tell("unset", "TsControllerFanSensor", fan, "Status")
        self.expect_refusal(Event(IDS, 204, 1, 1, int(fan) - 1), "fan component does not exist: translated_trapArgC: 2")
        self.change("TsControllerFanSensor", fan, Status="Up")

    def test_an_object_that_the_array_does_not_give(self):
        disk = int(self.array.first("TsDisk"))
        self.array.fault("error", "ObjectNotAvailable", "it is gone", "on", "TsDisk")
        try:
            self.expect_refusal(Event(IDS, 202, disk), "ErrorCode: [ObjectNotAvailable]")
        finally:
            self.array.clear_faults()
        self.tell_and_expect(Event(IDS, 202, disk))


if __name__ == "__main__":
    unittest.TestCase.maxDiff = None
    story.tell()
