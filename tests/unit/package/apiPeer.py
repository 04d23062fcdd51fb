"""The API manager's side of an exchange, in bytes written by hand, so that no code is shared with the library."""

import os
import socket
import struct
import threading


def _varint(number):
    out = b""
    while number > 0x7f:
        out += bytes([number & 0x7f | 0x80])
        number >>= 7
    return out + bytes([number])


def _field(number, body):
    return _varint(number << 3 | 2) + _varint(len(body)) + body


def envelope(document):
    """An APIResp with one Command that holds the document."""
    command = _field(1, document.encode())
    return b"\x08\x03" + _field(3, b"\x08\x01" + _field(2, command))


def _receive(connection, size):
    data = b""
    while len(data) < size:
        piece = connection.recv(size - len(data))
        if not piece:
            raise ConnectionError("the client has closed")
        data += piece
    return data


class Peer:
    """Listens at a path and answers each request with what answer(document) gives. Keeps the requests' documents."""

    def __init__(self, path, answer):
        self.requests = []
        self._answer = answer
        self._listener = socket.socket(socket.AF_UNIX)
        self._path = path
        self._listener.bind(path)
        self._listener.listen()
        self._thread = threading.Thread(target=self._serve)
        self._thread.start()

    def _serve(self):
        while True:
            connection, _ = self._listener.accept()
            with connection:
                try:
                    body = _receive(connection, struct.unpack(">I", _receive(connection, 4))[0])
                except ConnectionError:
                    return  # what close() does
                document = body[body.index(b"<lumapi>"):body.index(b"</lumapi>") + len(b"</lumapi>")].decode()
                self.requests.append(document)
                answer = envelope(self._answer(document))
                connection.sendall(struct.pack(">I", len(answer)) + answer)

    def close(self):
        with socket.socket(socket.AF_UNIX) as last:
            last.connect(self._path)
        self._thread.join()
        self._listener.close()
        os.unlink(self._path)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()
