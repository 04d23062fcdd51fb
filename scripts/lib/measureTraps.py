"""Measures, in the sandbox, how events pass through the daemon: the time from the message on the socket to the
notification at the receiver, and the number of events per second. --quick only shows that it runs."""

import os
import random
import socket
import statistics
import struct
import subprocess
import sys
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.realpath(__file__)), "..", "..", "tests", "system"))
from harness import array, ber, daemon, machine, management, notificationTest, receiver  # noqa: E402  (path above)

BARE_SENDER = os.path.join(machine.BUILD, "bench", "sendNotifications")
API_SOCKET = "/tmp/apimgr.sock"
COMMUNITY = "watch.tower"

IDLE_SLEEP_MS = 10
WANTED_RATIO = 1.5
QUICK = "--quick" in sys.argv
SINGLE_EVENTS = 5 if QUICK else 300
PAUSE_S = (0.04, 0.08)  # between single events; random, so that they meet every phase of the loop
BURST = 100 if QUICK else 2000
BURSTS = 3


def document(method):
    key = machine.read_file(machine.SESSION_KEY).splitlines()[0].strip()
    return f"<lumapi><ApiConnection><SessionKey>{key}</SessionKey></ApiConnection>{method}</lumapi>".encode()


def method(kind, command, instance=""):
    return (f"<ApiMethod><CommandType>Method</CommandType><Object>{kind}</Object><Command>{command}</Command>"
            "<Async>false</Async><ObjectEncodeType>xml</ObjectEncodeType><Attributes>"
            f"{instance and f'<InstanceId>{instance}</InstanceId>'}<LiteObj>1</LiteObj></Attributes></ApiMethod>")


def receive_exactly(link, count):
    octets = b""
    while len(octets) < count:
        octets += link.recv(count - len(octets)) or sys.exit("the array closed the connection")
    return octets


def exchange_ms(frame):
    """Makes a call to the array over its own connection, as the daemon does. Returns the time it took."""
    begin = time.monotonic()
    with socket.socket(socket.AF_UNIX, socket.SOCK_STREAM) as link:
        link.connect(API_SOCKET)
        link.sendall(frame)
        answer = receive_exactly(link, struct.unpack(">I", receive_exactly(link, 4))[0])
    elapsed = (time.monotonic() - begin) * 1000
    if b"<Successful>True</Successful>" not in answer:
        raise AssertionError(f"the array rejected a call: {answer[:400]}")
    return elapsed


def request(*words):
    """Returns the frame of a call."""
    command = management.octets_field(1, document(method(*words)))
    inner = management.number_field(1, 1) + management.octets_field(4, command)
    return management.frame(management.number_field(1, 2) + management.octets_field(2, inner) +
                            management.number_field(7, 1))


class Measurement:
    def __init__(self):
        self.array = array.Array()
        self.daemon = daemon.Daemon()
        self.receiver = receiver.Receiver()
        machine.configure_daemon(trapsEnabled="yes", trapDest="127.0.0.1", trapPort=self.receiver.port,
                                 trapCommun=COMMUNITY, trapVer=2)

    def start(self):
        self.array.start(objects=notificationTest.healthy("typical"))
        self.daemon.start()
        self.take("the cold start")
        dump = self.array.dump()
        self.disk, self.enclosure = dump["TsDisk"][3]["Index"], dump["TsEnclosure"][0]["Index"]

    def stop(self):
        self.daemon.stop()
        self.array.stop()
        self.receiver.close()

    def take(self, what):
        arrival, datagram = self.receiver.take_datagram()
        if ber.read(datagram).pdu != "trap2":
            raise AssertionError(f"{what}: no notification of version 2c")
        return arrival

    def kinds(self):
        """Returns (name, trap command, calls to the array that it needs) of each event."""
        return (("201 free text", "1 2 3 201 0 0 0 0 a text of the usual length", ()),
                ("202 disk", f"1 2 3 202 {self.disk} 0 0 0 x@@@a text",
                 (request("TsDisk", "Get", f"{array.SERIAL}.{self.disk}"),)),
                ("205 enclosure", f"1 2 3 205 {self.enclosure} 0 0 0 x@@@a text", (request("TsEnclosure", "GetList"),)),
                ("206 enclosure fan", f"1 2 3 206 {self.enclosure} 1 1 0 x@@@a text",
                 (request("TsEnclosure", "GetList"), request("TsEnclosureCoolingFanSensor", "GetList"))))

    def latencies_ms(self, command, requests):
        """Returns the latencies of single events, and of the exchanges that they need, made between the events."""
        message, events, exchanges = management.trap(command), [], []
        with management.Sender() as sender:
            for _ in range(SINGLE_EVENTS):
                time.sleep(random.uniform(*PAUSE_S))
                begin = time.monotonic()
                sender.send(message)
                events.append((self.take(command) - begin) * 1000)
                exchanges.append(sum(map(exchange_ms, requests)))
        return sorted(events), sorted(exchanges)

    def show_latencies(self):
        print(f"{'event':20} {'median':>9} {'99 %':>9} {'exchanges':>10}   median / (idle sleep of {IDLE_SLEEP_MS} ms "
              f"+ exchanges), wanted: at most {WANTED_RATIO}")
        for name, command, requests in self.kinds():
            events, exchanges = self.latencies_ms(command, requests)
            median, needed = statistics.median(events), statistics.median(exchanges)
            late = events[len(events) * 99 // 100]
            print(f"{name:20} {median:6.2f} ms {late:6.2f} ms {needed:7.2f} ms   "
                  f"{median / (IDLE_SLEEP_MS + needed):5.2f}", flush=True)

    def burst_s(self, command):
        with management.Sender() as sender:
            begin = time.monotonic()
            sender.send(management.trap(command) * BURST)
        return [self.take(f"number {number} of {BURST}") for number in range(BURST)][-1] - begin

    def bare_s(self):
        output = subprocess.run([BARE_SENDER, f"udp:127.0.0.1:{self.receiver.port}", str(BURST)], check=True, text=True,
                                stdout=subprocess.PIPE).stdout
        for number in range(BURST):
            self.take(f"bare number {number}")
        return float(output)

    def show_bursts(self):
        """Alternates between bare bursts and the daemon, so that both see the same load of the machine."""
        for name, command, _ in self.kinds()[:2]:
            pairs = [(self.bare_s(), self.burst_s(command)) for _ in range(BURSTS)]
            bare, whole = (statistics.median(each) for each in zip(*pairs))
            ratio = statistics.median(seconds / alone for alone, seconds in pairs)
            print(f"{BURST} of {name:15} {BURST / whole:7.0f} per second; as many bare snmp_send: {BURST / bare:7.0f} "
                  f"per second; {ratio:5.1f} times as long", flush=True)


def main():
    machine.require_sandbox()
    measurement = Measurement()
    try:
        measurement.start()
        measurement.show_latencies()
        measurement.show_bursts()
    finally:
        measurement.stop()
    return 0


if __name__ == "__main__":
    sys.exit(main())
