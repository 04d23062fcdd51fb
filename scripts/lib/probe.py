"""A manager that sends raw datagrams, and the array and daemon that it measures. Requests are built before a
measurement and responses are decoded after it, so that the measured time is mostly that of system calls."""

import contextlib
import gc
import multiprocessing
import os
import select
import socket
import statistics
import sys
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.realpath(__file__)), "..", "..", "tests", "system"))
from harness import array, ber, berWriter, daemon, machine  # noqa: E402

AGENT = ("127.0.0.1", 161)
QUICK = "--quick" in sys.argv  # only to see that a measurement runs
TIMEOUT_S = 1 if QUICK else 5
FIRST_ID = 0x10000000
SETTLE_S = 0.5 if QUICK else 2  # start-up is not part of a measurement
RESTART_S = 0 if QUICK else 1.5  # a daemon that lost snmpd makes the shell start a new copy after a second
ERRORS = {1: "tooBig", 5: "genErr"}
EXCEPTIONS = {0x80: "noSuchObject", 0x81: "noSuchInstance", 0x82: "endOfMibView"}


# --- datagrams

def get(number, *oids):
    return request(berWriter.GET, number, [(oid, berWriter.NULL) for oid in oids])


def request(kind, number, bindings, first=0, second=0, community="public"):
    return berWriter.message("2c", community, berWriter.pdu(kind, FIRST_ID + number, bindings, first, second))


def read_answer(datagram):
    """Returns the number of the request, the error status and a Reader of the bindings."""
    message = ber.Reader(datagram).inner(ber.SEQUENCE)
    message.integer()
    message.element(ber.OCTETS)
    pdu = message.inner(ber.RESPONSE_TAG)
    number, status = pdu.integer() - FIRST_ID, pdu.integer()
    pdu.integer()
    return number, status, pdu


def verdict(datagram):
    """Returns the number of the request, and "value" or the name of its first error."""
    number, status, pdu = read_answer(datagram)
    if status:
        return number, ERRORS.get(status, f"error {status}")
    kinds = [each.type for each in ber.bindings(pdu, EXCEPTIONS)]
    return number, next((kind for kind in kinds if kind in EXCEPTIONS.values()), "value")


def open_link():
    """Returns a socket that is not connected, so that sending does not fail while the master agent
    restarts."""
    link = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
    link.bind(("127.0.0.1", 0))
    return link


def exchange(link, address, packet):
    """Sends one request and returns the seconds until its response, and the response; (TIMEOUT_S, None) if
    there is none. Do not use the link after that: a late response would be taken for the next request's."""
    link.settimeout(TIMEOUT_S)
    begin = time.monotonic()
    link.sendto(packet, address)
    try:
        datagram = link.recv(65535)
    except TimeoutError:
        return TIMEOUT_S, None
    return time.monotonic() - begin, datagram


# --- separate processes

class Background:
    """Runs function(pipe, *arguments) in a separate process, so that nothing here delays it. The pipe becomes
    readable when the function should return."""

    def __init__(self, function, *arguments):
        context = multiprocessing.get_context("fork")
        self.pipe, other = context.Pipe()
        self.process = context.Process(target=self.run, args=(other, function, arguments), daemon=True)
        self.process.start()
        other.close()

    def run(self, pipe, function, arguments):
        self.pipe.close()
        gc.freeze()
        gc.disable()
        pipe.send(function(pipe, *arguments))

    def stop(self):
        with contextlib.suppress(OSError):  # it has exited already
            self.pipe.send(None)
        return self

    def result(self):
        result = self.pipe.recv()
        self.process.join()
        return result


def send_on_schedule(pipe, packets, times):
    """Sends each packet at its time, in seconds since the call, without waiting for earlier responses.
    Returns the times at which packets were sent, and (time, datagram) of each response."""
    link = open_link()
    sent, came, count = [], [], len(packets)
    begin = time.monotonic()
    end = begin + times[-1] + TIMEOUT_S
    while len(sent) < count or len(came) < count:
        due = begin + times[len(sent)] if len(sent) < count else end
        now = time.monotonic()
        if now >= due:
            if len(sent) == count:
                break
            sent.append(now)
            link.sendto(packets[len(sent) - 1], AGENT)
            continue
        readable = select.select((link, pipe), (), (), due - now)[0]
        if link in readable:
            came.append((time.monotonic(), link.recv(65535)))
        elif pipe in readable:
            pipe.recv()
            count, end = len(sent), time.monotonic() + TIMEOUT_S
    return sent, came


# --- figures

def percentile(ordered, percent):
    return ordered[min(len(ordered) * percent // 100, len(ordered) - 1)]


class Latencies:
    """Latencies of the requests in `sent`, {number: time}. A request without a response counts as TIMEOUT_S,
    so that the percentiles include it."""

    def __init__(self, sent, came):
        answers = {}
        for moment, datagram in came:
            number, word = verdict(datagram)
            if number in sent:
                answers.setdefault(number, (moment, word))
        in_time = {number: answer for number, answer in answers.items()
                   if answer[0] - sent[number] < TIMEOUT_S}
        self.count = len(sent)
        self.unanswered = self.count - len(in_time)
        self.errors = sum(word != "value" for _, word in in_time.values())
        self.ordered_ms = sorted([(moment - sent[number]) * 1000 for number, (moment, _) in in_time.items()] +
                                 [TIMEOUT_S * 1000] * self.unanswered)

    def figures(self):
        """Returns median, 99th percentile and maximum in milliseconds."""
        return statistics.median(self.ordered_ms), percentile(self.ordered_ms, 99), self.ordered_ms[-1]


def load():
    """Returns the load average of the last minute, which includes other work on the machine."""
    return os.getloadavg()[0]


# --- the setting

@contextlib.contextmanager
def running_daemon(preset):
    """Starts an array and a daemon, yields them, and kills both afterwards."""
    machine.configure_daemon()
    simulated, subagent = array.Array(), daemon.Daemon()
    try:
        simulated.start(preset)
        subagent.start()
        time.sleep(SETTLE_S)
        yield simulated, subagent
    finally:
        simulated.stop()
        for _ in range(2):  # a new copy of the daemon may be about to start
            machine.kill_processes_named("snmpSubagent", "snmpd", "arraySim")
            time.sleep(RESTART_S)
        machine.remove_file(daemon.PID_FILE)
