"""The link to the API manager: away at the start, lost and back, lost for good."""

from harness import machine, mib, story, waiting

STRIKE = "failed interface test to apimgr: strikes_against_apimgr = %d out of 3"
RECOVERED = "interface to apimgr has been recovered before reached 3 strikes"
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

    def test_the_array_is_lost_and_back_before_the_third_strike(self):
        self.array.start()
        self.daemon.start()
        daemon_pid, snmpd_pid = self.daemon.pid(), self.daemon.snmpd_pid()
        dump = self.array.dump()
        self.array.stop()
        self.daemon.wait_for_log(STRIKE % 1, 60)
        self.array.start()
        self.daemon.wait_for_log(RECOVERED, 90)
        oid = mib.oid("tsCtlrName", 1)
        self.assertEqual(self.manager.value(oid), dump["TsController"][0]["Name"])
        self.assertEqual((self.daemon.pid(), self.daemon.snmpd_pid()), (daemon_pid, snmpd_pid))
        # The link is good again: changes come in, and the next loss starts at strike one.
        self.array.set("TsController", self.array.first("TsController"), "Name", "seen after the loss")
        self.manager.wait_for_value(oid, "seen after the loss", 180)
        self.assertEqual(len(self.daemon.lines_with(RECOVERED)), 1)
        self.array.stop()
        self.daemon.wait_for_log(STRIKE % 1, 60, times=2)
        self.assertEqual(self.daemon.lines_with(STRIKE % 2), [])

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

    def test_one_failed_exchange_costs_no_strike(self):
        self.array.start()
        self.daemon.start()
        self.array.fault("refuse", "for", "1")
        self.daemon.wait_for_log("Caught std::exception processing request", 60)
        name = self.array.dump()["TsController"][0]["Name"]
        waiting.wait_until(lambda: self.manager.value(mib.oid("tsCtlrName", 1)) == name, "the daemon serves on")
        self.assertEqual(self.daemon.lines_with("strikes_against_apimgr"), [])


if __name__ == "__main__":
    story.tell()
