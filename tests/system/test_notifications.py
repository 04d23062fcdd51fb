"""Notifications as a receiver gets them: the whole of each, in each of the three forms that can be configured."""

import unittest

from harness import machine, story
from harness.receiver import Receiver, Trapd
from harness.trapStory import COMMUNITY, IDS, MARK, TrapStory
from harness.traps import Event

TEST_TRAP = Event((28, 0, 0), 200)


class EachForm:
    """Run below in each form."""

    SETTINGS = {"sendTestTrap": "yes"}
    PLACES = (0,)

    @classmethod
    def launch(cls):
        super().launch()
        cls.expect(TEST_TRAP)  # asked for by the settings; it comes after the cold start

    def test_objects_and_components_well_and_unwell(self):
        for place in self.PLACES:
            for case in self.cases(place, text="the prefix@@@the alert"):
                for value in (case.good, case.bad, case.good):
                    with self.subTest(case=case, value=value):
                        self.put(case, value)
                        self.tell_and_expect(case.event)

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


class Version1(EachForm, TrapStory):
    VERSION = 1
    DESTINATION = "localhost"


class Version2(EachForm, TrapStory):
    VERSION = 2
    PLACES = (0, -1)


class Inform(EachForm, TrapStory):
    VERSION = 3
    LISTEN = DESTINATION = "::1" if machine.has_ipv6() else "127.0.0.1"


if __name__ == "__main__":
    unittest.TestCase.maxDiff = None
    story.tell()
