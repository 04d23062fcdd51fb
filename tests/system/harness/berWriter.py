"""Encodes SNMP requests, including some that no tool would send."""

GET, GET_NEXT, SET, GET_BULK = 0xA0, 0xA1, 0xA3, 0xA5
VERSIONS = {"1": 0, "2c": 1}
NULL = b"\x05\x00"


def length(count):
    if count < 0x80:
        return bytes([count])
    octets = count.to_bytes((count.bit_length() + 7) // 8, "big")
    return bytes([0x80 | len(octets)]) + octets


def element(tag, contents):
    return bytes([tag]) + length(len(contents)) + contents


def integer(number):
    octets = (number if number >= 0 else ~number).bit_length() // 8 + 1
    return element(0x02, number.to_bytes(octets, "big", signed=True))


def octets(value):
    return element(0x04, value.encode() if isinstance(value, str) else value)


def arc(number):
    groups = [number & 0x7F]
    while number > 0x7F:
        number >>= 7
        groups.append(number & 0x7F | 0x80)
    return bytes(reversed(groups))


def oid(text):
    first, second, *others = map(int, text.split("."))
    return element(0x06, b"".join(map(arc, [40 * first + second, *others])))


def sequence(*elements):
    return element(0x30, b"".join(elements))


def message(version, community, pdu):
    return sequence(integer(VERSIONS[version]), octets(community), pdu)


def pdu(kind, request_id, bindings, first=0, second=0):
    """bindings: (OID, the element of its value). first, second: non-repeaters and max-repetitions of a GETBULK."""
    return element(kind, integer(request_id) + integer(first) + integer(second) +
                   sequence(*(sequence(oid(name), value) for name, value in bindings)))
