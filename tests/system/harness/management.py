"""The array application's side of the daemon's management socket. Encodes messages without a protobuf library."""

import os
import socket
import struct

from . import waiting

SOCKET = "/tmp/snmpsubagent.sock"

MGMT = 6  # type of the envelope
SEND_TRAP, TEMP_TEST, DISPLAY_TRAPS, VERBOSE_ON, VERBOSE_OFF = 1, 2, 3, 4, 5


def varint(number):
    octets = bytearray()
    while number > 0x7F:
        octets.append(number & 0x7F | 0x80)
        number >>= 7
    octets.append(number)
    return bytes(octets)


def number_field(place, number):
    return varint(place << 3) + varint(number)


def octets_field(place, octets):
    return varint(place << 3 | 2) + varint(len(octets)) + octets


def frame(body):
    return struct.pack(">I", len(body)) + body


def message(specific, text=""):
    """Returns the frame of one management message."""
    octets = text.encode() if isinstance(text, str) else text
    body = (number_field(1, 1) + number_field(2, 1) + number_field(3, 0) + number_field(4, specific) +
            octets_field(5, octets))
    return frame(number_field(1, MGMT) + octets_field(6, body))


def trap(text):
    return message(SEND_TRAP, text)


class Sender:
    """One connection, open until close() or the end of a with block."""

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
        """Waits until the daemon has closed the connection. If it left octets unread, this is a reset."""
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
    """Sends octets over a separate connection."""
    with Sender() as sender:
        sender.send(*octets)


def wait_until_there():
    waiting.wait_until(lambda: os.path.exists(SOCKET), "the management socket exists")
