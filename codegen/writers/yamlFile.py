"""Writes YAML that begins with the notice."""

import yaml

from codegen.writers.output import notice

SOURCES = "data/mib and data/monitoring"


class Dumper(yaml.SafeDumper):
    """Indents sequences below their key, and writes no aliases."""

    def increase_indent(self, flow=False, indentless=False):
        return super().increase_indent(flow, False)

    def ignore_aliases(self, data):
        return True


def dump(value):
    return yaml.dump(value, Dumper=Dumper, sort_keys=False, allow_unicode=True, width=float("inf"))


def document(head, value):
    """head: lines of a comment after the notice."""
    return notice(SOURCES, "#") + "".join(f"# {line}".rstrip() + "\n" for line in head) + dump(value)
