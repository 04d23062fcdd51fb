"""The command-line client of the array's API; each call is one process."""

import contextlib
import json
import os
import subprocess

from . import machine, waiting

PROGRAM = os.path.join(machine.BUILD, "tools", "apiClient", "apiClient")


class Response:
    def __init__(self, result):
        self.status = result.returncode
        self.output = result.stdout
        self.errors = result.stderr

    def __repr__(self):
        return f"status {self.status}\n{self.output}{self.errors}"


def call(*words):
    """Makes one call, as a user would type it."""
    return Response(subprocess.run([PROGRAM, *map(str, words)], stdin=subprocess.DEVNULL, capture_output=True,
                                 text=True, timeout=120 * waiting.PATIENCE, check=False))


def objects(*words):
    """Makes a call that must succeed, and returns its response, parsed from JSON."""
    response = call(*words, "--format", "json")
    if response.status != 0:
        raise AssertionError(f"{' '.join(map(str, words))}: {response}")
    return json.loads(response.output)


@contextlib.contextmanager
def watched(*words):
    """Repeats a call every second until the end of the block. Returns the lines that it prints."""
    with subprocess.Popen([PROGRAM, *words, "--watch", "1"], stdout=subprocess.PIPE, text=True) as process:
        try:
            yield process.stdout
        finally:
            process.kill()
