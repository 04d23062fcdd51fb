"""What the daemon remembers of unhealthy objects: one notification for each change of state, clearing ones, and the
look that it takes at them by itself every minute."""

import unittest

from harness import management, mib, story, trapLists
from harness.trapStory import TrapStory

HEADING = "7,7,7: trapNum, trapArgA, trapArgB, trapArgC, trapArgD, owner, uint, str, status, uint, str"
REDUNDANT = "we're not sending out this trap cuz it would be redundant: "
CHANGED = "found status change: "
GONE = "error while checking status - element is probably gone - removing outstanding trap: "
RECHECK_LIMIT_S = 120  # a record is looked at after a minute, one record in a second
NO_NUMBER = 2**32 - 1  # of a variable that holds a text


def arguments(event):
    return (f"trapNum: {event.number}, trapArgA: {event.a}, trapArgB: {event.b}, trapArgC: {event.c}, "
            f"trapArgD: {event.d}")


class Outstanding(TrapStory):
    SETTINGS = {"verbose": "yes"}

    def columns_of(self, event):
        """Columns of owner, verify and status."""
        if event.number in trapLists.OBJECTS:
            trap = trapLists.OBJECTS[event.number]
            verify = trap.index if event.number in (202, 207, 208, 209) else trap.owner
            return trap.owner, verify, trap.status
        component = trapLists.COMPONENTS[event.number, event.b]
        return component.name, component.status - 1, component.status

    def assert_redundant(self, event, status, times=2):
        self.daemon.begin_log()
        self.expect_nothing_of(*[event] * times)
        owner, _, status_column = self.columns_of(event)
        line = f"{REDUNDANT}trapNum: {event.number}, owenerOid: {owner}, statusOid: {status_column}, status: {status}"
        self.assertEqual(len(self.daemon.lines_with(line)), times, line)

    def test_one_notification_for_each_change(self):
        for case in self.cases(0, (3, 4, 5), "@@@something happened"):
            with self.subTest(case=case):
                self.put(case, case.bad)
                self.tell_and_expect(case.event)
                self.assert_redundant(case.event, 2)
                self.assert_redundant(case.event._replace(d=4, ids=(9, 9, 9), text="@@@another text"), 2, 1)
                self.tell_and_expect(case.event._replace(d=5))  # always gets through, and leaves a record
                self.assert_redundant(case.event, 2)
                self.put(case, case.other)
                self.tell_and_expect(case.event)
                self.assert_redundant(case.event, 0 if case.event.number == 211 else 3, 1)
                self.put(case, case.good)
                self.tell_and_expect(case.event)
                self.tell_and_expect(case.event)  # nothing is remembered of a healthy one
        self.assertEqual(self.displayed(), [])

    # --- the operator's view

    def displayed(self):
        """The lines about records that the daemon writes when it is asked for them."""
        self.daemon.begin_log()
        management.send(management.message(management.DISPLAY_TRAPS))
        self.daemon.wait_for_log(HEADING)
        self.expect_nothing_of()  # what belongs to the heading has been written by now
        lines = [line.partition("): ")[2] for line in self.daemon.log().splitlines()]
        return [line for line in lines[lines.index(HEADING) + 1:] if "ownerVar" in line]

    def record_line(self, case, status, text):
        event, model = case.event, self.model()
        owner, verify, status_column = self.columns_of(event)
        place = (model.row_of(event),) if event.number in trapLists.OBJECTS else model.place_of_component(event)
        number, name = place[-1], ""
        if mib.MIB.columns[owner].type == "string":
            number, name = NO_NUMBER, model.column(owner, *place).decode()
        return (f"{','.join(map(str, event.ids))}: {event.number}, {event.a}, {event.b}, {event.c}, {event.d}, "
                f"ownerVar col-id:{owner}, uint:{number}, str:{name}, "
                f"verifyVar col-id:{verify}, uint:{model.column(verify, *place)} "
                f"statusVar col-id:{status_column}, uint:{status}, str:{text}")

    # --- the look every minute

    def expect_in_any_order(self, events):
        """Each of another trap number. A record that slides into the place of a removed one waits for the next walk."""
        events = {event.number: event for event in events}
        while events:
            got = self.receiver.take(RECHECK_LIMIT_S)
            event = events.pop(int(got.bindings[1].value.rpartition(".")[2]))
            self.assert_is(event, got)
            self.daemon.wait_for_log(CHANGED + arguments(event))

    def test_the_look_every_minute(self):
        """The last one by its name: it leaves two records."""
        cases = [self.object_case(202, 0), self.object_case(202, -1), self.object_case(209, 1),
                 self.component_case(204, 1, 0, 1), self.component_case(206, 2, -1, 0), self.object_case(208, 1),
                 self.object_case(212, 1)]
        # Each with a text and a last argument of its own; not 5, which would clear.
        cases = [case._replace(event=case.event._replace(d=-number, text=f"prefix@@@of case {number}"))
                 for number, case in enumerate(cases)]
        recovering, vanishing, changing, component, orphan, staying, ups = cases
        for case in cases:
            self.put(case, case.bad)
            self.tell_and_expect(case.event)
        self.assertEqual(self.displayed(), [self.record_line(case, 2, "Down") for case in cases])

        # A manager asks for one that is remembered: nothing is sent. The command shows when the scalar is refreshed.
        self.assertEqual(self.writer.set((mib.oid("tsVolumeForceTrap", 2), "s", "ForceTrap")).status, 0)
        self.expect_nothing_of()

        self.daemon.begin_log()
        for case in (recovering, component, ups):
            self.put(case, case.good)
        self.put(changing, changing.other)
        self.put(self.object_case(205, -1), "Down")  # of the orphan
        self.array.tell("remove", ups.kind, self.index_of(ups.kind, 0))  # it moves up a row, and is followed
        self.model()  # as it is before the last disk goes, and the other rows stay where they are
        self.array.tell("remove", vanishing.kind, vanishing.index)
        self.expect_in_any_order([recovering.event._replace(d=5), changing.event, component.event._replace(d=5),
                                  ups.event._replace(d=5)])
        for case in (vanishing, orphan):
            self.daemon.wait_for_log(GONE + arguments(case.event), RECHECK_LIMIT_S)
        self.assertEqual(self.displayed(), [self.record_line(staying, 2, "Down"),
                                            self.record_line(changing, 3, "Degraded")])
        self.assertTrue(self.receiver.is_empty())
        self.manager.wait_for_value(mib.scalar("forceTrapCommand"), f"15 1 60 208 {staying.event.a} 0 0 0 @@@", 60)


if __name__ == "__main__":
    unittest.TestCase.maxDiff = None
    story.tell()
