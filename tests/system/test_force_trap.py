"""Notifications that a manager asks for: the word ForceTrap in a row's own column, or a whole command in a scalar."""

import unittest

from harness import mib, story
from harness.trapStory import TrapStory
from harness.traps import Event, Refused

# Table, trap number, ids, and what stands behind: "row", "index" (of the object), "component B".
FAMILY = (("tsCtlr", 203, (37, 4, 8), "index"), ("tsDisk", 202, (13, 1, 37), "row"),
          ("tsEncl", 205, (12, 1, 100), "row"), ("tsCtlrFan", 204, (29, 1, 98), "component 1"),
          ("tsCtlrPower", 204, (29, 1, 43), "component 2"), ("tsCtlrVoltage", 204, (29, 1, 34), "component 4"),
          ("tsCtlrTemp", 204, (29, 1, 48), "component 3"), ("tsEnclFan", 206, (12, 5, 28), "component 1"),
          ("tsEnclPower", 206, (12, 4, 33), "component 2"), ("tsEnclIoMod", 206, (12, 6, 35), "component 5"),
          ("tsEnclTemp", 206, (12, 6, 35), "component 3"), ("tsEnclAlarm", 206, (12, 7, 37), "component 6"),
          ("tsDiskFolder", 207, (18, 24, 14), "index"), ("tsVolume", 208, (15, 1, 60), "index"),
          ("tsServer", 209, (23, 1, 301), "index"), ("tsCache", 210, (29, 1, 47), "row"),
          ("tsTs", 211, (7, 7, 7), "row"), ("tsUPS", 212, (29, 1, 22), "index"))

PAYLOAD = "NMS's ForceTrap payload: "
COMMAND = mib.scalar("forceTrapCommand")


class ForcedNotifications(TrapStory):
    SETTINGS = {"verbose": "yes"}

    def force(self, table, instance, form=str):
        self.daemon.begin_log()
        answer = self.writer.set((form(mib.oid(table + "ForceTrap", *instance)), "s", "ForceTrap"))
        self.assertEqual(answer.status, 0, answer)

    def event_of(self, number, ids, what, table, instance):
        def index():
            return self.model().array.value(table + "ApiIndex", *instance)

        if what == "row":
            return Event(ids, number, instance[0], text="@@@")
        if table == "tsCtlr":
            return Event(ids, number, int(self.index_of("TsController", instance[0] - 1)), text="@@@")
        if what == "index":
            return Event(ids, number, index(), text="@@@")
        third = index() - 2 if table == "tsCtlrFan" else instance[1]
        return Event(ids, number, instance[0], int(what.split()[1]), third, text="@@@")

    def assert_outcome(self, event):
        """The command is the event's, and comes of it what comes of an event from the array."""
        self.daemon.wait_for_log(PAYLOAD)
        self.assertEqual([line.partition(PAYLOAD)[2] for line in self.daemon.lines_with(PAYLOAD)], [event.command()])
        try:
            self.model().list_of(event)
        except Refused as refusal:
            self.daemon.wait_for_log(str(refusal))
            self.expect_nothing_of()
        else:
            self.expect(event)

    def instances(self, table):
        """Of the first rows of the first parents, and one further on."""
        column, model = table + "ForceTrap", self.model().array
        wanted = [(1, 1), (1, 2), (2, 1), (2, 3)] if mib.TABLES[table].parent else [(1,), (2,), (3,), (5,)]
        return [instance for instance in wanted if model.value(column, *instance) is not None]

    def test_every_row_of_the_family(self):
        for table, number, ids, what in FAMILY:
            for instance in self.instances(table):
                with self.subTest(table=table, instance=instance):
                    event = self.event_of(number, ids, what, table, instance)
                    self.force(table, instance, mib.old_form if instance[-1] == 2 else str)
                    self.assert_outcome(event)

    def test_whole_commands(self):
        event = self.object_case(212, 0, (1, 2, 3), "@@@by hand").event
        for event in (event, event._replace(d=5), Event((4, 5, 6), 201, text="free text"), Event((1, 1, 1), 7),
                      Event((0, 0, 0), 0), Event((6, 6, 6), 200), Event((6, 6, 6), 201, text="x" * 600)):
            with self.subTest(event=event):
                answer = self.writer.set((COMMAND, "s", event.command()))
                self.assertEqual(answer.status, 0, answer)
                self.expect(event)
                self.assertEqual(self.manager.value(COMMAND), event.command())


if __name__ == "__main__":
    unittest.TestCase.maxDiff = None
    story.tell()
