"""The array application's side of the daemon's management socket: messages as octets, by hand."""

import os
import socket
import struct

from . import waiting

SOCKET = "/tmp/snmpsubagent.sock"
GREATEST_BODY = 16 * 2097152

MGMT = 6  # kind of envelope
SEND_TRAP, TEMP_TEST, DISPLAY_TRAPS, VERBOSE_ON, VERBOSE_OFF = 1, 2, 3, 4, 5


def varint(number):
    octets = bytearray()
    while number > 0x7F:
        octets.append(number & 0x7F | 0x80)
        number >>= 7
    octets.append(number)
    return bytes(octets)


def number_field(place, number):
    return b"" if number is None else varint(place << 3) + varint(number)


def octets_field(place, octets):
    return b"" if octets is None else varint(place << 3 | 2) + varint(len(octets)) + octets


def management_body(specific, text=None, command_type=0, service=1, kind=1):
    """The inner message. None leaves a field out."""
    octets = text.encode() if isinstance(text, str) else text
    return (number_field(1, service) + number_field(2, kind) + number_field(3, command_type) +
            number_field(4, specific) + octets_field(5, octets))


def envelope(inner, kind=MGMT, place=6, sequence=None):
    return number_field(1, kind) + octets_field(place, inner) + number_field(7, sequence)


def frame(body):
    return struct.pack(">I", len(body)) + body


def message(specific, text=None, **fields):
    """The whole frame of one management message."""
    return frame(envelope(management_body(specific, text, **fields)))


def trap(text):
    return message(SEND_TRAP, text)


class Sender:
    """One connection; it stays until close, or to the end of a with block."""

    def __init__(self, limit_s=30):
        self.socket = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
        self.socket.settimeout(limit_s * waiting.PATIENCE)
        try:
            self.socket.connect(SOCKET)
        except OSError:
            self.socket.close()
            raise

    def send(self, *octets):
        self.socket.sendall(b"".join(octets))

    def wait_until_dropped(self):
        """Waits until the daemon has closed its end. A reset is an end as well: it left octets unread."""
        try:
            assert self.socket.recv(1) == b""
        except ConnectionResetError:
            pass

    def close(self):
        self.socket.close()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()


def send(*octets):
    """Over a connection of its own."""
    with Sender() as sender:
        sender.send(*octets)


def wait_until_there():
    waiting.wait_until(lambda: os.path.exists(SOCKET), "the management socket is there")
