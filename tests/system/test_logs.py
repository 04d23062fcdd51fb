"""The application log: warnings go to syslog, in debug mode everything else goes to the debug file."""

import os
import socket
import threading

from harness import daemon, machine, story, waiting

SYSLOG = "/dev/log"
DEBUG_FILE = "/mnt/cores/logs/apimgrDebuglog.txt"


class Syslog:
    """Plays syslog; `lines` holds what came."""

    def __init__(self):
        self.lines = []
        self.socket = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
        self.socket.bind(SYSLOG)
        self.thread = threading.Thread(target=self.receive, daemon=True)
        self.thread.start()

    def receive(self):
        while data := self.socket.recv(8192):
            self.lines.append(data.decode("utf-8", "replace"))

    def close(self):
        self.socket.shutdown(socket.SHUT_RD)
        self.thread.join()
        self.socket.close()
        os.unlink(SYSLOG)

    def has(self, *parts):
        return any(all(part in line for part in parts) for line in list(self.lines))


class TheApplicationLog(story.Story):
    def setUp(self):
        super().setUp()
        self.syslog = Syslog()
        self.addCleanup(self.syslog.close)
        machine.remove_file(DEBUG_FILE)
        self.array.start()

    def wait_for_warning(self):
        # User facility, priority warning, the program's path as the ident.
        waiting.wait_until(lambda: self.syslog.has("<12>", f"{machine.DAEMON}: level(4) category(snmpSubagent) "
                                                   f"message({daemon.UP})"), "the warning has reached syslog")

    def test_as_a_service(self):
        self.daemon.start()
        self.wait_for_warning()
        self.assertFalse(self.syslog.has("level(7)") or os.path.exists(DEBUG_FILE))

    def test_in_debug_mode(self):
        machine.configure_daemon(verbose="yes")
        self.daemon.start_in_foreground()
        self.wait_for_warning()
        waiting.wait_until(lambda: "calling snmp_sess_init()...\n" in machine.read_file(DEBUG_FILE),
                           "the debug file has the debug line")
        self.assertEqual(os.stat(DEBUG_FILE).st_mode & 0o777, 0o600)
        self.assertNotIn(daemon.UP, machine.read_file(DEBUG_FILE))


if __name__ == "__main__":
    story.tell()
