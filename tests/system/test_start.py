"""Configuration files and the session key: missing, empty, odd. Each ends as the manual says."""

import contextlib
import os
import shutil
import unittest

from harness import daemon, machine, mib, story, waiting

NO_KEY = "Error reading in the trusted session key"
GOOD_KEY = "k3y.of_this~array+/=-"


@contextlib.contextmanager
def kept(path):
    """Puts a file back as it was."""
    copy = path + ".kept"
    shutil.copy2(path, copy)
    try:
        yield
    finally:
        machine.remove_file(path)
        os.rename(copy, path)


class TheModeFile(story.Story):
    def test_without_one_valid_line_the_daemon_does_not_start(self):
        self.array.start()
        for text in (None, "", "# isdebugmode=true\n", "isdebugmode true\n", "=true\n", "\n\n"):
            with self.subTest(text=text):
                machine.remove_file(machine.MODE_CONF)
                if text is not None:
                    machine.write_file(machine.MODE_CONF, text)
                self.daemon.start_in_foreground(wait=False, configure=False)
                self.assertEqual(self.daemon.wait_for_exit_status(), 1)
                self.assertEqual(self.daemon.log(), "")
                self.assertIsNone(self.daemon.pid())

    def test_what_keeps_it_in_the_foreground(self):
        self.array.start()
        for text, foreground in (("isdebugmode=false\nisdebugmode = TrUe \n", True), ("other=true\n", False)):
            with self.subTest(text=text):
                machine.write_file(machine.MODE_CONF, text)
                self.daemon.start_in_foreground(wait=False, configure=False)
                waiting.wait_until(self.daemon.pid, "the daemon has written its process id")
                self.assertEqual(self.daemon.pid() == self.daemon.foreground.pid, foreground)
                machine.end_processes_named("snmpSubagent", "snmpd")
                self.daemon.foreground.wait()
                machine.remove_file(daemon.PID_FILE)

    def test_without_its_folder_it_cannot_go_into_the_background(self):
        os.rename("/mnt/root", "/mnt/away")
        try:
            self.daemon.start_in_foreground(wait=False)
            self.assertEqual(self.daemon.wait_for_exit_status(), 255)
            self.assertIn("Failed to daenmonize", self.daemon.log())
        finally:
            os.rename("/mnt/away", "/mnt/root")


class TheSessionKey(story.Story):
    def test_a_key_that_may_not_be_trusted_stops_the_start(self):
        self.array.start()
        for what, text, mode in (("missing", None, 0), ("readable by others", GOOD_KEY, 0o604),
                                 ("a wrong character", "key<with>markup", 0o600)):
            with self.subTest(key=what), kept(machine.SESSION_KEY):
                machine.remove_file(machine.SESSION_KEY)
                if text is not None:
                    machine.write_file(machine.SESSION_KEY, text, mode)
                self.daemon.start_in_foreground(wait=False)
                self.assertEqual(self.daemon.wait_for_exit_status(), 0)
                self.assertIn(NO_KEY, self.daemon.log())
                self.assertIsNone(self.daemon.pid())
                self.assertEqual(machine.processes_named("snmpd"), [])

    def test_every_allowed_character_works_and_the_first_line_counts(self):
        with kept(machine.SESSION_KEY):
            machine.write_file(machine.SESSION_KEY, f" \t{GOOD_KEY}\t \nanother line\n", 0o600)
            self.array.start("small", "--key", GOOD_KEY)
            self.daemon.start()
            self.assertEqual(self.manager.value(mib.scalar("productName")), "Vorn-Lumivant Tessera")

    def test_a_key_that_the_array_refuses_stops_the_start(self):
        self.array.start("small", "--key", "another-key")
        self.daemon.start_in_foreground(wait=False)
        self.assertEqual(self.daemon.wait_for_exit_status(), 0)
        log = self.daemon.log()
        for text in ("xml resp for [tsController] is Not successful: ErrorCode:",
                     "error on getting info from api for controller table",
                     "could not start_snmp_agent_and_subagent()"):
            self.assertIn(text, log)
        self.assertEqual(machine.processes_named("snmpd"), [])


class TheSettings(story.Story):
    def test_a_missing_or_empty_file_does_not_stop_the_daemon(self):
        self.array.start()
        machine.remove_file(machine.DAEMON_CONF)
        self.daemon.start()
        self.assertIn("Unable to open file: /etc/snmpSubagent.conf", self.daemon.log())
        self.assertEqual(self.manager.value(mib.scalar("productName")), "Vorn-Lumivant Tessera")


class TheMasterAgentsFile(story.Story):
    def setUp(self):
        self.begin()
        self.array.start()

    def test_the_communities_of_the_self_test(self):
        with kept(machine.SNMPD_CONF):
            text = machine.read_file(machine.SNMPD_CONF)
            machine.write_file(machine.SNMPD_CONF, text.replace("rocommunity public", "rocommunity secret")
                               .replace("rwcommunity private", "rwcommunity deeper"))
            for ro, rw, works in (("secret", "x", True), ("**none**", "deeper", True), ("", "deeper", True),
                                  ("x", "deeper", False), ("**none**", "**none**", False)):
                with self.subTest(ro=ro, rw=rw):
                    machine.configure_daemon(rocommunity=ro, rwcommunity=rw)
                    self.daemon.start(wait=works)
                    if works:
                        self.daemon.stop()
                    else:
                        self.daemon.wait_for_log(daemon.ENDED, 60)
                        self.assertIn("ERROR: timed out waiting to receive snmp-GET of self-test oid.",
                                      self.daemon.log())
                        self.daemon.wait_until_ended()

    def test_without_agentx_in_the_file_the_start_is_given_up(self):
        with kept(machine.SNMPD_CONF):
            machine.write_file(machine.SNMPD_CONF, "rocommunity public\n")
            self.daemon.start_in_foreground(wait=False)
            self.assertEqual(self.daemon.wait_for_exit_status(120), 0)
            self.assertIn("no main_session, calling agent_check_and_process() to see if we can kick-start",
                          self.daemon.log())
            self.assertIn("Error: timeout waiting for main_session", self.daemon.log())
            self.assertEqual(machine.processes_named("snmpd"), [])


if __name__ == "__main__":
    unittest.TestCase.maxDiff = None
    story.tell()
