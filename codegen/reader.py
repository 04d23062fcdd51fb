"""Parses the data files, whose syntax data/README.md describes; keeps file and line for error messages."""

import os
import re
import shlex
from dataclasses import dataclass, field

NUMBER = re.compile(r"\d{1,18}$")


class DataError(Exception):
    """An error in a data file; the message begins with file and line."""


@dataclass(frozen=True)
class Place:
    file: str
    line: int

    def __str__(self):
        return f"{self.file}:{self.line}"

    def error(self, text):
        return DataError(f"{self}: {text}")


@dataclass(frozen=True)
class Line:
    """A line of words, and the indented lines below it."""

    place: Place
    words: list
    below: list = field(default_factory=list)

    def error(self, text):
        return self.place.error(text)

    def unknown(self):
        return self.error(f"unknown line '{' '.join(self.words)}'")

    def number(self, word, least=0):
        if not NUMBER.match(word) or int(word) < least:
            raise self.error(f"'{word}' is not a number of at least {least}")
        return int(word)

    def name(self, word, pattern, what):
        if not pattern.match(word):
            raise self.error(f"invalid name '{word}' of {what}")
        return word

    def options(self, words, keys):
        """Returns KEY=VALUE words as a dictionary. Raises DataError for unknown or repeated keys and empty values."""
        found = {}
        for word in words:
            key, _, value = word.partition("=")
            if key not in keys or not value:
                allowed = ", ".join(key + "=" for key in keys) or "nothing"
                raise self.error(f"unexpected '{word}'; expected {allowed}")
            if key in found:
                raise self.error(f"duplicate {key}=")
            found[key] = value
        return found

    def add_to(self, known, name, thing, what):
        """Stores an item, which must have a place, under a name that must be new. Returns the item."""
        if name in known:
            raise self.error(f"duplicate {what} '{name}'; first defined at {known[name].place}")
        known[name] = thing
        return thing


def read_lines(path, name):
    """Returns the unindented lines of a file, each with the indented lines below it. name: the file in messages."""
    heads = []
    with open(path, encoding="utf-8") as file:
        for number, text in enumerate(file, 1):
            place = Place(name, number)
            try:
                words = shlex.split(text, comments=True)
            except ValueError as error:
                raise place.error(f"cannot split the line into words: {error}") from None
            if not words:
                continue
            if text[0] not in " \t":
                heads.append(Line(place, words))
            elif heads:
                heads[-1].below.append(Line(place, words))
            else:
                raise place.error("an indented line must follow one that is not indented")
    return heads


class Data:
    """The data directory. Messages and generated files name its files relative to its parent directory."""

    def __init__(self, folder):
        self.folder = os.path.abspath(folder)

    def path(self, name):
        return os.path.join(self.folder, name)

    def shown(self, name):
        return f"{os.path.basename(self.folder)}/{name}"

    def lines(self, name):
        return read_lines(self.path(name), self.shown(name))

    def text(self, name):
        with open(self.path(name), encoding="utf-8") as file:
            return file.read()

    def files(self, folder):
        """Returns the .def files of a directory, sorted by name."""
        names = sorted(name for name in os.listdir(self.path(folder)) if name.endswith(".def"))
        if not names:
            raise DataError(f"{self.shown(folder)}: no .def files")
        return [f"{folder}/{name}" for name in names]
