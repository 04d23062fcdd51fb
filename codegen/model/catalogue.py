"""The catalogue of API objects."""

from dataclasses import dataclass, field

from codegen.reader import Place

PRIVILEGES = ("Admin", "VolumeManager", "Reporter")

# Keyword in the data: class of the library.
BASES = {"status": "TSStatusBaseApiObject", "plain": "TSBaseApiObject"}

FILTER_COMMAND = "GetList"


@dataclass
class Attribute:
    """One descriptor. rules: {key: string, or number for bounds and lengths}."""

    place: Place
    name: str
    kind: str
    width: int
    label: str
    rules: dict = field(default_factory=dict)
    flagged: bool = False


@dataclass
class Argument:
    """An attribute of a command. described: the method class has a descriptor for it."""

    attribute: Attribute
    needed: bool
    described: bool = True

    @property
    def name(self):
        return self.attribute.name

    @property
    def is_required(self):
        """Returns whether a call without it is rejected. Filters are optional, as in the library's checks."""
        return self.needed and "filter" not in self.name.lower()


@dataclass
class Command:
    place: Place
    name: str
    changes_state: bool
    privilege: str
    arguments: list = field(default_factory=list)

    def required(self):
        return [argument.name for argument in self.arguments if argument.needed]

    def descriptors(self):
        return [argument.attribute for argument in self.arguments if argument.described]

    def is_list(self):
        return self.name == FILTER_COMMAND


@dataclass
class ArrayObject:
    place: Place
    name: str
    base: str
    text: str
    attributes: list = field(default_factory=list)
    commands: list = field(default_factory=list)
    associations: list = field(default_factory=list)

    def inherited(self):
        return INHERITED[self.base]

    def shares(self, attribute):
        """Returns whether the object has the same attribute as a command, so that they can share a descriptor."""
        return any(own.name == attribute.name and own.kind == attribute.kind and own.rules == attribute.rules
                   for own in self.attributes)


@dataclass
class MethodObject:
    place: Place
    name: str
    text: str
    attributes: list = field(default_factory=list)


@dataclass
class Catalogue:
    objects: list
    method_objects: list

    def method_object(self, name):
        return next((each for each in self.method_objects if each.name == name), None)


def _base_attribute(name, kind, width, label, **rules):
    return Attribute(Place("base classes", 0), name, kind, width, label, rules)


# The attributes of the hand-written base classes, in the order of their lists.
_PLAIN = [
    _base_attribute("TsName", "NAME", 25, "Tessera", minLength=1),
    _base_attribute("TsSerialNumber", "INT", 25, "Tessera SN"),
    _base_attribute("InstanceId", "INSTANCEID", 30, "Instance ID"),
    _base_attribute("InstanceName", "NAME", 50, "Instance Name", minLength=1),
    _base_attribute("ObjectType", "STRING", 15, "", minLength=1),
]
_STATUS = [
    _base_attribute("Status", "ENUM", 25, "Status", table="Status"),
    _base_attribute("ChildStatus", "ENUM", 25, "Child Status", table="Status"),
    _base_attribute("StatusMessage", "STRING", 32, "Status Message"),
]
INHERITED = {"plain": _PLAIN, "status": _STATUS + _PLAIN}
