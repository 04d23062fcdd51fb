"""Reads the line form of the data files: words, quoted texts, # comments; file and line are kept."""

import shlex
from dataclasses import dataclass


class DataError(Exception):
    """A mistake in a data file; its text begins with file and line."""


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
    place: Place
    indented: bool
    words: list

    def error(self, text):
        return self.place.error(text)


def read_lines(path, name=None):
    """The lines of a file that hold words. name: how errors call the file (default: its last part)."""
    name = name or path.rsplit("/", 1)[-1]
    lines = []
    with open(path, encoding="utf-8") as file:
        for number, text in enumerate(file, 1):
            place = Place(name, number)
            try:
                words = shlex.split(text, comments=True)
            except ValueError as error:
                raise place.error(f"cannot split the line into words: {error}") from None
            if words:
                lines.append(Line(place, text[0] in " \t", words))
    return lines
