"""Writes plain values as YAML in block style."""

import json
import re

PLAIN = re.compile(r"[A-Za-z_][A-Za-z0-9_.()-]*( [A-Za-z0-9_.()-]+)*$")
WORDS_WITH_A_MEANING = ("true", "false", "yes", "no", "on", "off", "null", "y", "n")


def scalar(value):
    if isinstance(value, int):
        return str(value)
    if PLAIN.match(value) and value.lower() not in WORDS_WITH_A_MEANING:
        return value
    return json.dumps(value)


def is_scalar(value):
    return not value or not isinstance(value, (dict, list, tuple))


def flow(value):
    """What fits behind its key: a word, or something empty."""
    return {dict: "{}", list: "[]", tuple: "[]"}.get(type(value)) or scalar(value)


def lines(value, indent):
    margin = " " * indent
    if isinstance(value, dict):
        for key, item in value.items():
            head = f"{margin}{scalar(key)}:"
            if is_scalar(item):
                yield f"{head} {flow(item)}"
            else:
                yield head
                yield from lines(item, indent + 2)
        return
    for item in value:
        if is_scalar(item):
            yield f"{margin}- {flow(item)}"
        else:
            first, *rest = lines(item, indent + 2)
            yield f"{margin}- {first.lstrip()}"
            yield from rest


def document(head, value):
    """head: lines of a comment."""
    return "".join(f"# {line}".rstrip() + "\n" for line in head) + "\n".join(lines(value, 0)) + "\n"
