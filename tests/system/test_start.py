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
        if os.path.isdir(path):
            os.rmdir(path)
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
        for text, foreground in (("isdebugmode=true\n", True), ("isdebugmode = TrUe \n", True),
                                 ("isdebugmode=1\n", True), ("isdebugmode=false\nisdebugmode=true\n", True),
                                 ("isdebugmode=yes\n", False), ("isdebugmode=0\n", False),
                                 ("other=true\n", False), (" #isdebugmode=true\n", False)):
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
        stranger = 12345
        for what, text, mode, owner in (("missing", None, 0, 0), ("empty", "", 0o600, 0), ("blank", "  \t\n", 0o600, 0),
                                        ("second line", f"\n{GOOD_KEY}\n", 0o600, 0),
                                        ("readable by the group", GOOD_KEY, 0o640, 0),
                                        ("readable by others", GOOD_KEY, 0o604, 0),
                                        ("writable by others", GOOD_KEY, 0o602, 0),
                                        ("somebody else's", GOOD_KEY, 0o600, stranger),
                                        ("a wrong character", "key<with>markup", 0o600, 0),
                                        ("a blank inside", "two words", 0o600, 0), ("a folder", "", None, 0)):
            with self.subTest(key=what), kept(machine.SESSION_KEY):
                if owner and not machine.has_users():
                    self.skipTest("needs another user than root")
                machine.remove_file(machine.SESSION_KEY)
                if mode is None:
                    os.mkdir(machine.SESSION_KEY, 0o700)
                elif text is not None:
                    machine.write_file(machine.SESSION_KEY, text, mode)
                    os.chown(machine.SESSION_KEY, owner, 0)
                self.daemon.start_in_foreground(wait=False)
                self.assertEqual(self.daemon.wait_for_exit_status(), 0)
                self.assertIn(NO_KEY, self.daemon.log())
                self.assertNotIn(daemon.UP, self.daemon.log())
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
    """/etc/snmpSubagent.conf. Level 7 lines show whether `verbose` was understood."""

    DEBUG_LINE = "testing apimgr..."

    def setUp(self):
        self.begin()
        self.array.start()

    def start_with(self, text):
        machine.remove_file(machine.DAEMON_CONF)
        if text is not None:
            machine.write_file(machine.DAEMON_CONF, text)
        self.daemon.start()
        self.assertEqual(self.manager.value(mib.scalar("productName")), "Vorn-Lumivant Tessera")
        log = self.daemon.log()
        self.daemon.stop()
        return log

    def test_a_missing_or_empty_file_does_not_stop_the_daemon(self):
        self.assertIn("Unable to open file: /etc/snmpSubagent.conf", self.start_with(None))
        self.assertIn("conf file is empty", self.start_with(""))

    def test_how_a_value_is_found(self):
        filler = "x" * 80 + "\n"
        for text, verbose in (("verbose yes\n", True), ("verbose \t \tyes\n", True), ("verboseyes\n", True),
                              ("# not verbose yes\n", True), ("verbose yes", False), ("verbose YES\n", False),
                              ("verbose yes \n", False), ("verbose yes\r\n", False), ("verbose no\nverbose yes\n", False),
                              (filler * 5 + "verbose yes\n", True), (filler * 6 + "verbose yes\n" + filler, True),
                              (filler * 7 + "verbose yes\n", False), ("verbose\nyes\n", False)):
            with self.subTest(text=text.lstrip("x\n")):
                log = self.start_with(text)
                self.assertEqual(self.DEBUG_LINE in log, verbose)

    def test_odd_values(self):
        log = self.start_with("controllerIndexThis 3\nverbose no\ntrapVer many\ntrapPort\n\0verbose yes\n")
        self.assertIn("conf_controllerIndexThis is not 1 or 2: 3", log)
        self.assertNotIn(self.DEBUG_LINE, log)

    def test_nothing_of_a_community_reaches_the_shell_as_a_command(self):
        for community in ("public;touch${IFS}/tmp/owned", "$(touch /tmp/owned)", "`touch /tmp/owned`",
                          "public'; touch /tmp/owned; '", 'a" & touch /tmp/owned & "', "public\ttouch"):
            with self.subTest(community=community):
                machine.configure_daemon(rocommunity=community)
                self.daemon.start(line="ERROR: timed out waiting to receive snmp-GET of self-test oid.")
                self.daemon.wait_until_ended()
                self.assertFalse(os.path.exists("/tmp/owned"))


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


class TheProgramsItStarts(story.Story):
    def test_a_missing_snmpd_is_told(self):
        self.array.start()
        link = "/usr/local/sbin/snmpd"
        target = os.readlink(link)
        os.unlink(link)
        try:
            self.daemon.start_in_foreground(wait=False)
            self.assertEqual(self.daemon.wait_for_exit_status(), 0)
            log = self.daemon.log()
            self.assertIn("***** child failed execv(snmpdArgs...) errno=2", log)
            self.assertIn("could not start_snmpd()", log)
        finally:
            os.symlink(target, link)


if __name__ == "__main__":
    unittest.TestCase.maxDiff = None
    story.tell()
