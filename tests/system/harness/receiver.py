"""Receivers of notifications: our own, and Net-SNMP's snmptrapd."""

import os
import queue
import socket
import subprocess
import threading
import time

from . import ber, machine, manager, waiting

BUFFER_BYTES = 32 * 1024 * 1024
MAX_DATAGRAM = 65535

TRAPD_HOME = "/tmp/trapd"
# %P kind, version and community; %N enterprise; %A agent address; %w generic; %q specific; %T time of the PDU.
# Then the bindings, one per line.
TRAPD_FORMAT = "@@%P|%N|%A|%w|%q|%T\\n%V\\n%v\\n"


def family_of(address):
    return socket.AF_INET6 if ":" in address else socket.AF_INET


class Receiver:
    """Receives datagrams and acknowledges informs. Its thread keeps bursts from overflowing the socket."""

    def __init__(self, address="127.0.0.1", port=0):
        self.arrived = queue.SimpleQueue()
        self.socket = socket.socket(family_of(address), socket.SOCK_DGRAM)
        self.enlarge_buffer()
        self.socket.bind((address, port))
        self.address, self.port = self.socket.getsockname()[:2]
        self.thread = threading.Thread(target=self.receive, daemon=True)
        self.thread.start()

    def enlarge_buffer(self):
        try:
            self.socket.setsockopt(socket.SOL_SOCKET, 33, BUFFER_BYTES)  # SO_RCVBUFFORCE: no limit
        except PermissionError:  # a container or a user namespace
            self.socket.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, BUFFER_BYTES)

    def receive(self):
        while True:
            datagram, sender = self.socket.recvfrom(MAX_DATAGRAM)
            if not datagram:  # see close
                return
            self.arrived.put((time.monotonic(), datagram))
            self.acknowledge(datagram, sender)

    def acknowledge(self, datagram, sender):
        try:
            if ber.read(datagram).pdu == "inform":
                self.socket.sendto(ber.response_to(datagram), sender)
        except ber.Malformed:
            pass  # take() reports it

    def take_datagram(self, limit_s=30):
        """Returns (time of arrival, octets) of the next datagram."""
        try:
            return self.arrived.get(timeout=limit_s * waiting.PATIENCE)
        except queue.Empty:
            raise waiting.TimedOut(f"no notification within {limit_s * waiting.PATIENCE:.0f} s") from None

    def take(self, limit_s=30):
        """Returns the next notification."""
        return ber.read(self.take_datagram(limit_s)[1])

    def is_empty(self):
        return self.arrived.empty()

    def close(self):
        """Closes the port. Datagrams that were received can still be taken."""
        with socket.socket(family_of(self.address), socket.SOCK_DGRAM) as waker:
            waker.sendto(b"", (self.address, self.port))
        self.thread.join(30)
        self.socket.close()


class SnmpTrapd(machine.Program):
    """snmptrapd in the foreground, with its files in a separate directory."""

    def __init__(self, home, configuration, place, *options):
        self.output = os.path.join(home, "trapd.log")
        os.makedirs(home, exist_ok=True)
        conf = os.path.join(home, "trapd.conf")
        machine.write_file(conf, configuration)
        machine.remove_file(self.output)
        super().__init__("snmptrapd", "-f", "-C", "-c", conf, "-n", "-t", "-Lf", self.output, "-On", "-Oe", *options,
                         place, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                         env={**os.environ, "SNMPCONFPATH": home, "MIBS": "", "SNMP_PERSISTENT_DIR": home})
        waiting.wait_until(lambda: "NET-SNMP version" in machine.read_file(self.output), "snmptrapd listens")


class Trapd(SnmpTrapd):
    """Logs what it receives. accepts: the configuration lines that select the accepted senders."""

    def __init__(self, accepts, port, address="127.0.0.1"):
        place = f"udp6:[{address}]:{port}" if ":" in address else f"udp:{address}:{port}"
        super().__init__(TRAPD_HOME, f"{accepts}\n[snmp] hexOutputLength 0\n", place,
                         "-X", "-Ox", "-Ot", "-F", TRAPD_FORMAT)

    def received(self):
        """Returns what it has logged so far: a list of (header fields as strings, bindings)."""
        notifications = []
        for text in machine.read_file(self.output).split("@@")[1:]:
            head, *lines = text.splitlines()
            notifications.append((head.split("|"), manager.parse_bindings("\n".join(lines))))
        return notifications

    def wait_for(self, count):
        waiting.wait_until(lambda: len(self.received()) >= count and self.received()[-1][1],
                           f"snmptrapd has logged {count} notifications")
        return self.received()
