"""A strict parser of SNMP notifications (BER). It shares no code with the library that the daemon uses."""

import ipaddress
from collections import namedtuple

from .manager import Binding

# request_id is None in a version 1 trap; enterprise, agent_address, generic, specific and time are None in the others.
Notification = namedtuple("Notification", "version community pdu request_id enterprise agent_address generic specific "
                                          "time bindings")

# error: its name; index: of the binding that it is about, from 1.
Response = namedtuple("Response", "request_id error index bindings")

SEQUENCE = 0x30
INTEGER, OCTETS, OID, IP_ADDRESS, TIMETICKS = 0x02, 0x04, 0x06, 0x40, 0x43
TYPES = {INTEGER: "INTEGER", OCTETS: "STRING", 0x05: "NULL", OID: "OID", IP_ADDRESS: "IpAddress", 0x41: "Counter32",
         0x42: "Gauge32", TIMETICKS: "Timeticks", 0x44: "Opaque", 0x46: "Counter64"}
UNSIGNED = ("Counter32", "Gauge32", "Timeticks")
PDUS = {0xA2: "response", 0xA4: "trap", 0xA6: "inform", 0xA7: "trap2"}
EXCEPTIONS = {0x80: "noSuchObject", 0x81: "noSuchInstance", 0x82: "endOfMibView"}
ERRORS = ("noError", "tooBig", "noSuchName", "badValue", "readOnly", "genErr", "noAccess", "wrongType", "wrongLength",
          "wrongEncoding", "wrongValue", "noCreation", "inconsistentValue", "resourceUnavailable", "commitFailed",
          "undoFailed", "authorizationError", "notWritable", "inconsistentName")
VERSIONS = {0: "1", 1: "2c"}
INFORM_TAG, RESPONSE_TAG = 0xA6, 0xA2


class Malformed(Exception):
    pass


class Reader:
    """Parses one element after the other. At the end, no octets may be left."""

    def __init__(self, octets):
        self.octets = octets

    def take(self, count):
        if count > len(self.octets):
            raise Malformed(f"expected {count} octets, found {len(self.octets)}")
        taken, self.octets = self.octets[:count], self.octets[count:]
        return taken

    def length(self):
        first = self.take(1)[0]
        if first < 0x80:
            return first
        if not 0x81 <= first <= 0x84:
            raise Malformed(f"length octet {first:#x}")
        return int.from_bytes(self.take(first & 0x7F), "big")

    def element(self, *tags):
        """Returns (tag, contents) of the next element. Its tag must be one of `tags`, if any are given."""
        tag = self.take(1)[0]
        if tags and tag not in tags:
            raise Malformed(f"tag {tag:#x}; expected one of {[f'{each:#x}' for each in tags]}")
        return tag, self.take(self.length())

    def inner(self, tag):
        return Reader(self.element(tag)[1])

    def integer(self):
        return signed(self.element(INTEGER)[1])

    def end(self):
        if self.octets:
            raise Malformed(f"{len(self.octets)} octets after the end")


def signed(contents):
    if not contents or len(contents) > 1 and contents[0] in (0, 0xFF) and (contents[0] ^ contents[1]) < 0x80:
        raise Malformed(f"malformed integer {contents.hex()}")
    return int.from_bytes(contents, "big", signed=True)


def unsigned32(contents):
    value = signed(contents)
    if not 0 <= value < 2**32:
        raise Malformed(f"unsigned value out of range: {value}")
    return value


def oid(contents):
    arcs, arc = [], 0
    for octet in contents:
        arc = arc << 7 | octet & 0x7F
        if not octet & 0x80:
            arcs.append(arc)
            arc = 0
    if not arcs or contents[-1] & 0x80:
        raise Malformed(f"malformed object identifier {contents.hex()}")
    first = min(arcs[0] // 40, 2)
    return ".".join(map(str, [first, arcs[0] - 40 * first] + arcs[1:]))


def value(tag, contents):
    """Returns (type, value) of a binding's value. Types have the names that Net-SNMP's tools print."""
    if tag not in TYPES:
        raise Malformed(f"type {tag:#x}")
    kind = TYPES[tag]
    if kind == "INTEGER":
        return kind, signed(contents)
    if kind in UNSIGNED:
        return kind, unsigned32(contents)
    if kind == "OID":
        return kind, oid(contents)
    if kind == "IpAddress":
        return kind, str(ipaddress.IPv4Address(contents))
    return kind, contents


def bindings(reader, exceptions=()):
    """exceptions: {tag: type} of those that are allowed in place of a value."""
    found = []
    outer = reader.inner(SEQUENCE)
    while outer.octets:
        one = outer.inner(SEQUENCE)
        name = oid(one.element(OID)[1])
        tag, contents = one.element()
        found.append(Binding(name, *((exceptions[tag], None) if tag in exceptions else value(tag, contents))))
        one.end()
    return found


def read_version1(reader):
    """Parses the fields of a version 1 trap that precede its bindings."""
    return {"request_id": None, "enterprise": oid(reader.element(OID)[1]),
            "agent_address": value(*reader.element(IP_ADDRESS))[1], "generic": reader.integer(),
            "specific": reader.integer(), "time": unsigned32(reader.element(TIMETICKS)[1])}


def read_version2(reader):
    head = dict.fromkeys(("enterprise", "agent_address", "generic", "specific", "time"))
    head["request_id"] = reader.integer()
    if reader.integer() or reader.integer():
        raise Malformed("a notification with an error status or index")
    return head


def read(datagram):
    """Parses a datagram to a Notification. Raises Malformed."""
    whole = Reader(datagram)
    message = whole.inner(SEQUENCE)
    whole.end()
    version = VERSIONS.get(message.integer())
    if version is None:
        raise Malformed("unknown version; expected 1 or 2c")
    community = message.element(OCTETS)[1].decode("ascii")
    tag, contents = message.element(*PDUS)
    message.end()
    if (PDUS[tag] == "trap") != (version == "1"):
        raise Malformed(f"PDU {PDUS[tag]} in a message of version {version}")
    reader = Reader(contents)
    head = read_version1(reader) if version == "1" else read_version2(reader)
    found = bindings(reader)
    reader.end()
    return Notification(version=version, community=community, pdu=PDUS[tag], bindings=found, **head)


def read_response(datagram):
    """Returns the Response in a datagram. Raises Malformed."""
    whole = Reader(datagram)
    message = whole.inner(SEQUENCE)
    whole.end()
    message.integer()
    message.element(OCTETS)
    reader = message.inner(RESPONSE_TAG)
    message.end()
    request_id, error, index = reader.integer(), reader.integer(), reader.integer()
    if not 0 <= error < len(ERRORS):
        raise Malformed(f"error status {error}")
    found = bindings(reader, EXCEPTIONS)
    reader.end()
    return Response(request_id, ERRORS[error], index, found)


def response_to(inform):
    """Returns the datagram that acknowledges an inform: the same message with the tag of a response."""
    message = Reader(inform).inner(SEQUENCE)
    message.element(INTEGER)
    message.element(OCTETS)
    place = len(inform) - len(message.octets)
    assert inform[place] == INFORM_TAG
    return inform[:place] + bytes([RESPONSE_TAG]) + inform[place + 1:]
