"""The link to the API manager: away at the start, and lost for good."""

from harness import machine, story

STRIKE = "failed interface test to apimgr: strikes_against_apimgr = %d out of 3"
OUT = "failed interface test to apimgr: 3 retries and no connect."


class TheLink(story.Story):
    def assert_all_has_ended(self):
        """No daemon, no master agent, and no shell that waits to start the next daemon."""
        for name in ("snmpSubagent", "snmpd", "sh", "sleep"):
            self.assertEqual(machine.processes_named(name), [], name)
        self.assertIsNone(self.daemon.pid())

    def test_the_array_is_away_at_the_start(self):
        self.daemon.start_in_foreground(wait=False)
        self.assertEqual(self.daemon.wait_for_exit_status(), 0)
        log = self.daemon.log()
        for text in (" ---- Can't connect to ApiMgr's socket ----", "Could not open socket to ApiMgr.",
                     "error on testing interface to apimgr.", "snmpSubagent is exiting."):
            self.assertIn(text, log)
        self.assertNotIn("starting agent", log)
        self.assert_all_has_ended()

    def test_the_array_is_lost_for_good(self):
        self.array.start()
        self.daemon.start_in_foreground()
        self.array.stop()
        self.assertEqual(self.daemon.wait_for_exit_status(120), 0)
        log = self.daemon.log()
        places = [log.find(text) for text in (STRIKE % 1, STRIKE % 2, OUT, "snmpSubagent is exiting.")]
        self.assertNotIn(-1, places)
        self.assertEqual(places, sorted(places))
        self.assert_all_has_ended()

if __name__ == "__main__":
    story.tell()
