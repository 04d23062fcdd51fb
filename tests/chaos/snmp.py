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

RESPONSE = 0xA2
EXCEPTIONS = {0x80: "noSuchObject", 0x81: "noSuchInstance", 0x82: "endOfMibView"}
ERRORS = ("noError", "tooBig", "noSuchName", "badValue", "readOnly", "genErr", "noAccess", "wrongType", "wrongLength",
          "wrongEncoding", "wrongValue", "noCreation", "inconsistentValue", "resourceUnavailable", "commitFailed",
          "undoFailed", "authorizationError", "notWritable", "inconsistentName")

# error: its name; index: of the binding that it is about, from 1.
Response = namedtuple("Response", "request_id error index bindings")
# sent, ended: monotonic times. response: None if none was received.
Exchange = namedtuple("Exchange", "sent ended response")

request_ids = itertools.count(1)


def value(tag, contents):
    return (EXCEPTIONS[tag], None) if tag in EXCEPTIONS else ber.value(tag, contents)


def read_response(datagram):
    """Raises ber.Malformed."""
    whole = ber.Reader(datagram)
    message = whole.inner(ber.SEQUENCE)
    whole.end()
    message.integer()
    message.element(ber.OCTETS)
    reader = message.inner(RESPONSE)
    message.end()
    request_id, error, index = reader.integer(), reader.integer(), reader.integer()
    if not 0 <= error < len(ERRORS):
        raise ber.Malformed(f"error status {error}")
    found = ber.bindings(reader, value)
    reader.end()
    return Response(request_id, ERRORS[error], index, found)


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
                response = read_response(self.socket.recv(MAX_DATAGRAM))
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
