"""The daemon as a process: going into the background, its pid file, signals, its exit, its heartbeat."""

import contextlib
import os
import signal
import socket

from harness import daemon, machine, mib, story, waiting

HEARTBEAT = ("127.0.0.1", 35003)
SIGTERM_LINE = "(((((((((((((((((( SIGTERM ))))))))))))))))))))"


def heartbeat(octets, close=True):
    """Returns what comes back until the daemon closes. close: no more will come."""
    with socket.create_connection(HEARTBEAT, timeout=60) as connection:
        connection.sendall(octets)
        answer = b""
        with contextlib.suppress(OSError):  # it has closed already
            if close:
                connection.shutdown(socket.SHUT_WR)
        with contextlib.suppress(ConnectionResetError):  # it has not read all that was sent
            while chunk := connection.recv(64):
                answer += chunk
        return answer


def listeners():
    """(address, port) of every listening TCP socket, as /proc shows them."""
    found = set()
    for name in ("tcp", "tcp6"):
        for line in machine.read_file(f"/proc/net/{name}").splitlines()[1:]:
            words = line.split()
            if words[3] == "0A":
                address, port = words[1].split(":")
                found.add((address, int(port, 16)))
    return found


class ADaemon(story.Story):
    def setUp(self):
        self.begin()
        self.array.start()

    def test_it_goes_into_the_background(self):
        self.daemon.start()
        pid = self.daemon.pid()
        self.assertEqual(machine.read_file(daemon.PID_FILE), str(pid))
        self.assertEqual(os.readlink(f"/proc/{pid}/cwd"), "/mnt/root")
        self.assertEqual([os.readlink(f"/proc/{pid}/fd/{number}") for number in range(3)], ["/dev/null"] * 3)
        self.assertEqual(int(self.status(pid, "SigIgn"), 16) & 1, 1, "SIGHUP is ignored")
        self.assertEqual(self.status(pid, "Umask"), "0077")
        # A grandchild in a session of its own, which it does not lead: it cannot get a terminal again.
        session, group = os.getsid(pid), os.getpgid(pid)
        self.assertNotIn(pid, (session, group))
        self.assertNotEqual(session, os.getsid(0))
        self.assertEqual(machine.read_file(f"/proc/{pid}/stat").rsplit(")", 1)[1].split()[4], "0")

    @staticmethod
    def status(pid, name):
        return dict(line.split(":\t", 1) for line in machine.read_file(f"/proc/{pid}/status").splitlines())[name].strip()

    def test_sigterm_ends_it_in_order(self):
        self.daemon.start_in_foreground()
        self.daemon.signal(signal.SIGTERM)
        self.assertEqual(self.daemon.wait_for_exit_status(), 0)
        log = self.daemon.log()
        self.assertIn(SIGTERM_LINE, log)
        self.assertGreater(log.find(daemon.ENDED), log.find(SIGTERM_LINE))
        self.assertNotIn("will try a restart", log)
        for name in ("snmpd", "snmpSubagent", "sh", "sleep"):
            self.assertEqual(machine.processes_named(name), [], name)
        self.assertFalse(os.path.exists(daemon.PID_FILE))

    def test_the_heartbeat_echoes_four_bytes(self):
        self.daemon.start()
        self.assertEqual([address for address, port in listeners() if port == HEARTBEAT[1]], ["0100007F"])
        self.assertEqual(heartbeat(b"ping"), b"ping")
        self.assertEqual(heartbeat(b"pin", close=False), b"")  # dropped after its time limit

    def test_the_heartbeat_goes_on_while_the_array_does_not_answer(self):
        self.daemon.start()
        self.array.fault("hang")
        waiting.wait_until(lambda: self.array.exchanges(struck=True), "an exchange hangs", 60)
        self.assertEqual(heartbeat(b"ping"), b"ping")
        self.array.stop()  # which ends the exchange
        self.array.start()
        self.manager.wait_for_value(mib.scalar("productName"), "Vorn-Lumivant Tessera", 60)
        self.assertTrue(self.daemon.is_running())


if __name__ == "__main__":
    story.tell()
