"""The command line client of the array's API, a process for each call."""

import json
import os
import subprocess

from . import machine, waiting

PROGRAM = os.path.join(machine.BUILD, "tools", "apiClient", "apiClient")
COMPLETION = os.path.join(machine.REPOSITORY, "tools", "apiClient", "apiClient.bash-completion")

# Takes the place of a shell with a person before it: words as bash sees them, the last one unfinished.
COMPLETE = """
source "$1"; shift
COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1))
_apiClient "$1" "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}"
printf '%s\\n' "${COMPREPLY[@]}"
"""


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


def complete(*words):
    """What bash offers for the last word."""
    return machine.run("bash", "-c", COMPLETE, "bash", COMPLETION, PROGRAM, *words).splitlines()
