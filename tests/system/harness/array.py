"""The simulated array, in a separate process."""

import json
import os
import subprocess

from . import machine, waiting

OUTPUT = "/var/log/arraySim.log"
DUMP = "/tmp/arraySim.dump"
MODEL = "/tmp/arraySim.model"
SERIAL = 64702


def preset(name):
    """Returns the objects of a preset. Needs no running array."""
    return json.loads(machine.run(machine.ARRAY_SIM, "dump", "--preset", name))["objects"]


class Array:
    def __init__(self):
        self.process = None

    def start(self, preset="small", *options, objects=None):
        """objects: replace those of the preset; in the format of dump()."""
        source = ["--preset", preset]
        if objects is not None:
            self.write_model(objects)
            source = ["--model", MODEL]
        with open(OUTPUT, "ab") as output:
            begin = output.tell()
            self.process = subprocess.Popen([machine.ARRAY_SIM, "serve", "--trace", *source, *options],
                                            stdin=subprocess.DEVNULL, stdout=output, stderr=output)
        waiting.wait_until(lambda: self.is_ready(begin), "the simulated array is ready", 60)
        return self

    @staticmethod
    def write_model(objects):
        machine.write_file(MODEL, json.dumps({"serial": SERIAL, "objects": objects}))

    def load(self, objects):
        """Replaces all objects, without an event."""
        self.write_model(objects)
        self.tell("load", MODEL)

    def is_ready(self, begin):
        if self.process.poll() is not None:
            raise AssertionError(f"arraySim exited with {self.process.returncode}: {machine.read_file(OUTPUT)}")
        with open(OUTPUT, "rb") as file:
            file.seek(begin)
            return b"arraySim ready" in file.read()

    def is_running(self):
        return self.process is not None and self.process.poll() is None

    def stop(self):
        """Terminates the process, so that nobody listens any more."""
        if self.is_running():
            self.process.terminate()
            self.process.wait(30 * waiting.PATIENCE)
        self.process = None

    def tell(self, *words):
        """Sends a command to arraySim and returns its reply."""
        return machine.run(machine.ARRAY_SIM, "tell", *words)

    def set(self, kind, index, attribute, value):
        self.tell("set", kind, index, attribute, value)

    def get(self, kind, index, attribute):
        return self.tell("get", kind, index, attribute).removesuffix("\n")

    def first(self, kind):
        """Returns the API index of the first object of a kind."""
        return self.dump()[kind][0]["Index"]

    def fail(self, kind, index, status="Down"):
        self.tell("fail", kind, index, status)

    def recover(self, kind, index):
        self.tell("recover", kind, index)

    def fault(self, *words):
        self.tell("fault", *words)

    def clear_faults(self):
        self.tell("clear")

    def exchanges(self, command=None, kind=None, affected=False):
        """Returns the number of exchanges, or of those with this command, about this kind, or affected by a fault."""
        rows = [line.split() for line in self.tell("stats").splitlines()]
        return sum(int(words[4 if affected else 2]) for words in rows if len(words) == 5 and words[2].isdigit() and
                   command in (None, words[0]) and kind in (None, words[1]))

    @staticmethod
    def last_exchange(command, kind):
        """Returns the trace of the latest exchange with a command about a kind: {column: word}."""
        columns = ("time", "conn", "seq", "command", "object", "lite", "objects", "bytes", "ms", "outcome")
        lines = [dict(zip(columns, line.split())) for line in machine.read_file(OUTPUT).splitlines()]
        return [line for line in lines if (line.get("command"), line.get("object")) == (command, kind)][-1]

    def dump(self):
        """Returns all objects: {kind: [{attribute: string}]}, in the order of the array's responses."""
        self.tell("dump", DUMP)
        with open(DUMP, encoding="utf-8") as file:
            whole = json.load(file)
        os.unlink(DUMP)
        return whole["objects"]
