"""The management socket, and the order in which events are notified."""

import unittest

from harness import management, systemTest, waiting
from harness.receiver import Receiver
from harness.notificationTest import COLD_START, MARK, RECEIVED, NotificationTest
from harness.traps import Event

IDS = (5, 6, 7)
EARLY = tuple(Event(IDS, 201, text=f"early {number}") for number in range(3))
STRIKE = "failed interface test to apimgr: strikes_against_apimgr = 1 out of 3"


class Events(NotificationTest):
    SETTINGS = {"verbose": "yes"}

    @classmethod
    def launch(cls):
        """Events that arrive during start-up are notified later, in the order of arrival."""
        cls.array.start(objects=cls.objects())
        cls.array.fault("delay", "2000", "on", "TsUps", "for", "1")  # so that start-up takes long enough
        cls.daemon.start(wait=False)
        management.wait_until_there()
        cls.send(*EARLY)
        cls.daemon.wait_until_served()
        cls.daemon.wait_for_log("generate coldstart")
        lines = [line for line in cls.daemon.log().splitlines() if RECEIVED in line or "generate coldstart" in line]
        early = next(place for place, line in enumerate(lines) if RECEIVED not in line)
        for event in EARLY[:early] + (COLD_START,) + EARLY[early:]:
            cls.expect(event)

    def test_the_switch_for_reduced_objects(self):
        """Calls request reduced objects until this is switched off."""
        for text, lite in (("false", "0"), ("true", "1")):
            management.send(management.message(management.TEMP_TEST))
            self.daemon.wait_for_log(f"liteObjEnabled toggled to {text}")
            self.send_and_expect(Event(IDS, 211, 1))
            # The array logs the exchange after it has sent the response.
            waiting.wait_until(lambda: self.array.last_exchange("GetList", "Tessera")["lite"] == lite,
                               f"a call has LiteObj {lite}")

    def test_a_second_sender_waits_for_the_first(self):
        first = [Event(IDS, 201, text=f"first {number}") for number in range(20)]
        second = [Event(IDS, 201, text=f"second {number}") for number in range(20)]
        with management.Sender() as one:
            one.send(management.trap(first[0].command()))
            self.expect(first[0])
            self.send(*second)  # the sender closes, but its events wait
            for event in first[1:]:
                one.send(management.trap(event.command()))
            for event in first[1:]:
                self.expect(event)
            self.assertTrue(self.receiver.is_empty())
        for event in second:
            self.expect(event)

    # --- order

    def test_a_burst_is_notified_completely_and_in_order(self):
        events = [Event((1, 2, 3), 201, text=f"number {number}") for number in range(1000)]
        self.send(*events)
        for event in events:
            self.expect(event)
        self.assertTrue(self.receiver.is_empty())

    def test_events_wait_for_the_array(self):
        kept = [Event(IDS, 201, text=f"kept {number}") for number in range(30)]
        kept.insert(15, Event(IDS, 208, int(self.array.dump()["TsVolume"][0]["Index"]), text="@@@kept too"))
        self.daemon.begin_log()
        self.array.fault("stop-listening")
        self.daemon.wait_for_log(STRIKE)
        self.send(*kept)
        self.daemon.wait_for_log(RECEIVED, times=len(kept))
        self.assertTrue(self.receiver.is_empty())
        self.array.clear_faults()
        for event in kept:
            self.expect(event)

    def test_nobody_listens_at_the_destination(self):
        """Notifications that cannot be delivered are lost; later ones arrive."""
        self.daemon.begin_log()
        self.receiver.close()
        self.send(*[MARK] * 3, Event(IDS, 999))
        self.daemon.wait_for_log("unknown trapNum passed fron lumivant-app: 999")
        type(self).receiver = Receiver(self.LISTEN, self.receiver.port)
        self.send_and_expect(MARK)
        self.assertTrue(self.receiver.is_empty())

    def test_z_a_sender_in_the_middle_of_a_frame_does_not_delay_shutdown(self):
        with management.Sender() as sender:
            sender.send(management.trap(MARK.command()), management.trap(MARK.command())[:-1])
            self.expect(MARK)
            self.daemon.stop()
            sender.wait_until_dropped()


if __name__ == "__main__":
    unittest.TestCase.maxDiff = None
    systemTest.main()
