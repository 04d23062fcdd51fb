"""The management socket, and the order in which events are reported."""

import unittest

from harness import management, systemTest, waiting
from harness.notificationTest import COLD_START, MARK, RECEIVED, NotificationTest
from harness.traps import Event

IDS = (5, 6, 7)
EARLY = tuple(Event(IDS, 201, text=f"early {number}") for number in range(3))


class Events(NotificationTest):
    SETTINGS = {"verbose": "yes"}

    @classmethod
    def launch(cls):
        """Events that arrive during start-up are reported later, in the order of arrival."""
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

    # --- order

    def test_a_burst_is_notified_completely_and_in_order(self):
        events = [Event((1, 2, 3), 201, text=f"number {number}") for number in range(1000)]
        self.send(*events)
        for event in events:
            self.expect(event)
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
