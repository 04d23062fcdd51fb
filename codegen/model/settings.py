"""The settings of /etc/snmpSubagent.conf."""

import re
from dataclasses import dataclass

from codegen.reader import DataError, Place

# The default in words, for the manual page; None if default= gives it.
TYPES = {"text": None, "number": None, "community": "none", "flag": "off", "controller": "unknown"}
NAME = re.compile(r"[A-Za-z][A-Za-z0-9]*$")


@dataclass
class Setting:
    """manual: lines of the manual page; without any, the setting shares those of the next one."""

    place: Place
    name: str
    type: str
    default: str
    secret: bool
    variable: str
    manual: list

    def missing(self):
        """Returns the default in words."""
        return TYPES[self.type] or self.default


def read_setting(line):
    words = line.words
    if words[0] != "setting" or len(words) < 3:
        raise line.unknown()
    name = line.name(words[1], NAME, "a setting")
    if words[2] not in TYPES:
        raise line.error(f"the type must be one of {', '.join(TYPES)}")
    options = line.options([word for word in words[3:] if word != "secret"], ("default", "variable"))
    if ("default" in options) != (TYPES[words[2]] is None):
        raise line.error("default= is required for types text and number, and only there")
    if words[2] == "number" and not re.match(r"\d+$", options["default"]):
        raise line.error(f"'{options['default']}' is not a number")
    for below in line.below:
        if len(below.words) != 1:
            raise below.unknown()
    return Setting(line.place, name, words[2], options.get("default", ""), "secret" in words[3:],
                   options.get("variable", f"conf_{name}"), [below.words[0] for below in line.below])


def read(data):
    """Returns the settings in the order in which the daemon reads them. Raises DataError."""
    found = {}
    for line in data.lines("daemon/settings.def"):
        setting = read_setting(line)
        line.add_to(found, setting.name, setting, "setting")
    settings = list(found.values())
    if not settings or not settings[-1].manual:
        raise DataError("settings.def: the last setting requires lines for the manual page")
    return settings
