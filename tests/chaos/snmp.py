"""A manager that encodes and decodes SNMP over UDP itself, so that the times of each exchange are known."""

import itertools
import socket
import time
from collections import namedtuple

from harness import ber, berWriter, waiting

AGENT = ("127.0.0.1", 161)
TRY_S = 4
TRIES = 3
REFUSED_PAUSE_S = 0.2  # between retries while nobody listens
MAX_DATAGRAM = 65535

# sent, ended: monotonic times. response: None if none was received.
Exchange = namedtuple("Exchange", "sent ended response")

request_ids = itertools.count(1)


class Manager:
    """A manager with one socket, for one thread."""

    def __init__(self, community="public", version="2c"):
        self.community = community
        self.version = version
        self.socket = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        self.socket.connect(AGENT)

    def request(self, kind, bindings, first=0, second=0, tries=TRIES):
        """Sends a request with bindings of (OID, element of the value); retries without a response, as tools do."""
        request_id = next(request_ids) & 0x7FFFFFFF
        datagram = berWriter.message(self.version, self.community,
                                     berWriter.pdu(kind, request_id, bindings, first, second))
        sent = time.monotonic()
        for number in range(1, tries + 1):
            response = self.exchange(datagram, request_id, sent + number * TRY_S * waiting.PATIENCE)
            if response:
                return Exchange(sent, time.monotonic(), response)
        return Exchange(sent, time.monotonic(), None)

    def exchange(self, datagram, request_id, deadline):
        """Sends the request, again whenever nobody listens. Returns None at the deadline."""
        self.send(datagram)
        while (left := deadline - time.monotonic()) > 0:
            self.socket.settimeout(left)
            try:
                response = ber.read_response(self.socket.recv(MAX_DATAGRAM))
            except TimeoutError:
                return None
            except ConnectionRefusedError:
                time.sleep(REFUSED_PAUSE_S)
                self.send(datagram)
                continue
            if response.request_id == request_id:  # others are late responses
                return response
        return None

    def send(self, datagram):
        """Sends without waiting for a response."""
        try:
            self.socket.send(datagram)
        except ConnectionRefusedError:  # of the previous datagram
            pass

    def read(self, kind, oids, first=0, second=0):
        return self.request(kind, [(oid, berWriter.NULL) for oid in oids], first, second)

    def get(self, *oids):
        return self.read(berWriter.GET, oids)

    def close(self):
        self.socket.close()
