"""The command line client of the array's API, a process for each call."""

import contextlib
import json
import os
import subprocess

from . import machine, waiting

PROGRAM = os.path.join(machine.BUILD, "tools", "apiClient", "apiClient")


class Answer:
    def __init__(self, result):
        self.status = result.returncode
        self.output = result.stdout
        self.errors = result.stderr

    def __repr__(self):
        return f"status {self.status}\n{self.output}{self.errors}"


def ask(*words):
    """One call, as a person would type it."""
    return Answer(subprocess.run([PROGRAM, *map(str, words)], stdin=subprocess.DEVNULL, capture_output=True,
                                 text=True, timeout=120 * waiting.PATIENCE, check=False))


def objects(*words):
    """What a call that must succeed answers, as JSON has it."""
    answer = ask(*words, "--format", "json")
    if answer.status != 0:
        raise AssertionError(f"{' '.join(map(str, words))}: {answer}")
    return json.loads(answer.output)


@contextlib.contextmanager
def watched(*words):
    """The lines that a call prints which is repeated every second until the end of the block."""
    with subprocess.Popen([PROGRAM, *words, "--watch", "1"], stdout=subprocess.PIPE, text=True) as process:
        try:
            yield process.stdout
        finally:
            process.kill()
