"""The management socket, and the order in which events come out."""

import unittest

from harness import management, story, waiting
from harness.trapStory import COLD_START, MARK, RECEIVED, TrapStory
from harness.traps import Event

IDS = (5, 6, 7)
EARLY = tuple(Event(IDS, 201, text=f"early {number}") for number in range(3))


class Events(TrapStory):
    SETTINGS = {"verbose": "yes"}

    @classmethod
    def launch(cls):
        """Events that come before the daemon is up are kept, in the order in which it has heard of them."""
        cls.array.start(objects=cls.objects())
        cls.array.fault("delay", "2000", "on", "TsUps", "for", "1")  # so that the start takes long enough
        cls.daemon.start(wait=False)
        management.wait_until_there()
        cls.tell(*EARLY)
        cls.daemon.wait_until_served()
        cls.daemon.wait_for_log("generate coldstart")
        lines = [line for line in cls.daemon.log().splitlines() if RECEIVED in line or "generate coldstart" in line]
        early = next(place for place, line in enumerate(lines) if RECEIVED not in line)
        for event in EARLY[:early] + (COLD_START,) + EARLY[early:]:
            cls.expect(event)

    def test_the_switch_of_short_answers(self):
        """Requests carry the wish for short objects until it is taken back."""
        for text, wish in (("false", "0"), ("true", "1")):
            management.send(management.message(management.TEMP_TEST))
            self.daemon.wait_for_log(f"liteObjEnabled toggled to {text}")
            self.tell_and_expect(Event(IDS, 211, 1))
            # The array writes its line when the answer has left.
            waiting.wait_until(lambda: self.array.last_exchange("GetList", "Tessera")["lite"] == wish,
                               f"the array is asked for objects with the wish {wish}")

    # --- order

    def test_a_burst_comes_out_in_order_and_whole(self):
        events = [Event((1, 2, 3), 201, text=f"number {number}") for number in range(1000)]
        self.tell(*events)
        for event in events:
            self.expect(event)
        self.assertTrue(self.receiver.is_empty())

    def test_z_a_sender_in_the_middle_of_a_frame_does_not_hold_up_the_end(self):
        with management.Sender() as sender:
            sender.send(management.trap(MARK.command()), management.trap(MARK.command())[:-1])
            self.expect(MARK)
            self.daemon.stop()
            sender.wait_until_dropped()


if __name__ == "__main__":
    unittest.TestCase.maxDiff = None
    story.tell()
