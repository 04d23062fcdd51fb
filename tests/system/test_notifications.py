"""Every notification as a receiver gets it: the whole of it, in each of the three forms that can be configured."""

import unittest

from harness import machine, mib, story, trapLists
from harness.receiver import Receiver, Trapd
from harness.trapStory import COMMUNITY, IDS, MARK, TrapStory
from harness.traps import Event

TEST_TRAP = Event((28, 0, 0), 200)

# Number of the component of a controller, and attributes of a degraded one beside what the array has.
DEGRADED = ((1, {"CurrentRpm": "4000"}), (1, {"CurrentRpm": "4001"}), (1, {"CurrentRpm": "13999"}),
            (1, {"CurrentRpm": "14000"}), (1, {"CurrentRpm": "0"}),
            (3, {"CurrentTemperature": "59 C/138 F"}), (3, {"CurrentTemperature": "60 C/140 F"}),
            (3, {"CurrentTemperature": "99 C/210 F"}),
            (4, {"CurrentVoltage": "4.51", "WarningLowerThreshold": "4.5", "WarningUpperThreshold": "5.50 V"}),
            (4, {"CurrentVoltage": "4.50", "WarningLowerThreshold": "4.5", "WarningUpperThreshold": "5.50 V"}),
            (4, {"CurrentVoltage": "-5.6", "WarningLowerThreshold": "-5.5", "WarningUpperThreshold": "-4.5"}),
            (4, {"CurrentVoltage": "5.5 V", "WarningLowerThreshold": "4.5", "WarningUpperThreshold": "5.50 V"}),
            (4, {"CurrentVoltage": "about 9", "WarningLowerThreshold": "4.5", "WarningUpperThreshold": "5.50"}),
            (4, {"CurrentVoltage": "9", "WarningLowerThreshold": "", "WarningUpperThreshold": "5.50"}),
            (4, {"CurrentVoltage": "1", "WarningLowerThreshold": "4.5", "WarningUpperThreshold": "n/a"}))

LONG = "0123456789" * 47
TEXTS = ("", "no separator", "@@@", "prefix@@@the text", "a@@@b@@@c", "@@@@", "@@@@@@x", "@@", " @@@ blank ahead",
         "@@@Größe <&> \"quoted\"", "@@@" + LONG, LONG, "x" * 254 + "@@@behind the cut", "tab\tand % s%n@@@%s%n")
PLAIN_TEXTS = ("", " @@@", " @@@x", "@@@not at the fifth", " @@@a text @@@ with another", "  @@@two blanks",
               " @@@" + LONG)

ODD_DISKS = (5, 6, 7, 8)  # places in the list


class EveryNotification:
    """Run below in each form."""

    SETTINGS = {"sendTestTrap": "yes"}

    @classmethod
    def launch(cls):
        super().launch()
        cls.expect(TEST_TRAP)  # asked for by the settings; it comes after the cold start

    @classmethod
    def objects(cls):
        objects = super().objects()
        enclosure = objects["TsEnclosure"][2]["Index"]
        for place, name in zip(ODD_DISKS, ("nodash", f"{enclosure}-", f"{enclosure}-1-2", f"0{enclosure}x-1")):
            objects["TsDisk"][place]["Name"] = name
        return objects

    def test_the_configured_test_trap_comes_once_and_can_be_told_again(self):
        self.expect_nothing_of()
        for event in (Event(IDS, 200), Event(IDS, 200, 1, 2, 3, 5, "prefix@@@not shown")):
            self.tell_and_expect(event)

    def test_plain_texts(self):
        for number in trapLists.PLAIN_TEXT:
            for text in PLAIN_TEXTS if number == 1 else PLAIN_TEXTS[:3]:
                with self.subTest(number=number, text=text):
                    self.tell_and_expect(Event(IDS, number, text=text))

    def test_free_texts(self):
        for text in TEXTS:
            with self.subTest(text=text):
                self.tell_and_expect(Event(IDS, 201, text=text))
        self.tell_and_expect(Event(IDS, 201, 9, 9, 9, 5, "a clearing one"))

    def test_alert_texts(self):
        event = self.object_case(205, 1).event
        for text in TEXTS:
            for d in (0, 4, 5):
                with self.subTest(text=text, d=d):
                    self.tell_and_expect(event._replace(d=d, text=text))

    def test_objects_and_components_well_and_unwell(self):
        for place in (0, -1):
            for case in self.cases(place, text="the prefix@@@the alert"):
                for value in (case.good, case.bad, case.other, case.bad, "Sideways", case.good):
                    with self.subTest(case=case, value=value):
                        self.put(case, value)
                        self.tell_and_expect(case.event)

    def test_a_ups_that_is_down_cannot_be_cleared(self):
        case = self.object_case(212, 0, text="@@@on battery")
        for status in ("Up", "Down", "Up"):
            self.put(case, status)
            self.tell_and_expect(case.event._replace(d=5))

    def test_advice_for_degraded_components(self):
        for component, values in DEGRADED:
            with self.subTest(component=component, **values):
                case = self.component_case(204, component, 1, 1)
                self.change(case.kind, case.index, Status="Degraded", **values)
                self.tell_and_expect(case.event._replace(d=5))
                self.put(case, "Up")
                self.tell_and_expect(case.event)

    def test_what_was_sent_can_be_read(self):
        for case, columns in ((self.component_case(206, 5, 0, 0, (1, 2, 3), "@@@read on"), range(167, 174)),
                              (self.object_case(202, 3, (4, 5, 6), "@@@of a disk"), (172, 173))):
            self.tell_and_expect(case.event)
            values = self.model().values(case.event)
            for column in (12, 13, 14, 175, *columns):
                name = mib.MIB.columns[column].name
                wanted = values[column][1]
                self.assertEqual(self.manager.value(mib.scalar(name)),
                                 wanted.decode() if isinstance(wanted, bytes) else wanted, name)

    def test_unknown_names_of_disks_and_enclosures(self):
        """The last one by its name: it leaves a name in the first row of the enclosures."""
        self.tell_and_expect(Event(IDS, 213, 4, 12, -3, text="@@@a device lost its disk"))
        for place in ODD_DISKS:
            for event in (self.object_case(202, place).event, Event(IDS, 213, place + 1, 1, 2)):
                with self.subTest(event=event):
                    self.tell_and_expect(event)
        self.tell_and_expect(Event(IDS, 213, 0, 7, 2147483647, text="@@@no disk concerned"))

    def test_snmptrapd_reads_the_same(self):
        """On the same port, with the tests' own receiver gone."""
        events = [Event(IDS, 200), Event(IDS, 4, text=" @@@plain words"),
                  self.object_case(208, 2, text="@@@Größe").event, MARK]
        self.receiver.close()
        trapd = Trapd(COMMUNITY, self.receiver.port, self.LISTEN)
        try:
            self.tell(*events)
            for event, (head, bindings) in zip(events, trapd.wait_for(len(events)), strict=True):
                self.assert_trapd_wrote(self.model().notification(event, self.VERSION, COMMUNITY), head, bindings)
        finally:
            trapd.close()
            type(self).receiver = Receiver(self.LISTEN, self.receiver.port)

    def assert_trapd_wrote(self, wanted, head, bindings):
        kind = {"trap": "TRAP", "trap2": "TRAP2", "inform": "INFORM"}[wanted.pdu]
        self.assertEqual(head[0], f"{kind}, SNMP v{wanted.version}, community {COMMUNITY}")
        if wanted.version == "1":
            self.assertEqual([word.lstrip(".") for word in head[1:5]],
                             [wanted.enterprise, wanted.agent_address, str(wanted.generic), str(wanted.specific)])
        else:
            bindings[0] = bindings[0]._replace(type="Timeticks", value=None)
        bindings = [each._replace(value=each.value.lstrip(".")) if each.type == "OID" else each for each in bindings]
        self.assertEqual(bindings, wanted.bindings)


class Version1(EveryNotification, TrapStory):
    VERSION = 1
    DESTINATION = "localhost"
    OWN_CONTROLLER = 2

    # Attributes of the array and of this controller, until there is no address of version 4 left.
    ADDRESSES = (({"ManagementIp": "198.51.100.7"}, {}), ({"ManagementIp": ""}, {}), ({"ManagementIp": "0.0.0.0"}, {}),
                 ({"IPv6ManagementIPPrefix": "0"}, {"IpAddress": "203.0.113.9"}), ({}, {"IpAddress": ""}))

    def expect_refusal_of_all(self, event, line):
        self.daemon.begin_log()
        self.tell(event)
        self.daemon.wait_for_log(line)
        self.assertTrue(self.receiver.is_empty())

    def test_the_address_of_the_array(self):
        """Trap 211 has the array's addresses read anew, trap 203 those of the controllers."""
        controller = self.object_case(203, 1)
        array_event, controller_event = Event(IDS, 211, 1, d=5), controller.event._replace(d=5)
        for array, own in self.ADDRESSES:
            with self.subTest(array=array, controller=own):
                self.change("Tessera", 1, **array)
                self.change(controller.kind, controller.index, **own)
                self.tell(array_event, controller_event)
                self.receiver.take()  # only the second was made with both tables read anew
                self.expect(controller_event)
        self.change("TsController", self.index_of("TsController", 0), IPv6Eth0IPPrefix="0")
        self.expect_refusal_of_all(controller_event, "Unable to get a non-zero IPAddr from the TS API")
        self.change("Tessera", 1, ManagementIp="a.b.c.d")
        self.expect_refusal_of_all(array_event, "couldn't parse ip addr string: a.b.c.d")
        self.change("Tessera", 1, ManagementIp="192.0.2.20", IPv6ManagementIPPrefix="64")
        self.tell_and_expect(array_event)


class Version2(EveryNotification, TrapStory):
    VERSION = 2


class Inform(EveryNotification, TrapStory):
    VERSION = 3
    LISTEN = DESTINATION = "::1" if machine.has_ipv6() else "127.0.0.1"


if __name__ == "__main__":
    unittest.TestCase.maxDiff = None
    story.tell()
