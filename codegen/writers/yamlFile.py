"""YAML with the notice at its head."""

import yaml

from codegen.writers.output import notice

SOURCES = "data/mib and data/monitoring"


class Dumper(yaml.SafeDumper):
    """Sequences are indented below their key, and no value is written as a reference to an equal one."""

    def increase_indent(self, flow=False, indentless=False):
        return super().increase_indent(flow, False)

    def ignore_aliases(self, data):
        return True


def dump(value):
    return yaml.dump(value, Dumper=Dumper, sort_keys=False, allow_unicode=True, width=float("inf"))


def document(head, value):
    """head: lines of a comment behind the notice."""
    return notice(SOURCES, "#") + "".join(f"# {line}".rstrip() + "\n" for line in head) + dump(value)
