"""Formats C++ within the maximum line length."""

import textwrap

WIDTH = 110


def comment(text, indent=""):
    """Returns a documentation comment: one line if it fits, else a block."""
    line = f"{indent}/** {text} */"
    if len(line) <= WIDTH:
        return line
    wrapped = textwrap.wrap(text, WIDTH - len(indent) - 3, break_on_hyphens=False)
    return "\n".join([f"{indent}/**", *(f"{indent} * {each}" for each in wrapped), f"{indent} */"])


def joined(opening, items, closing, indent):
    """Returns `opening item, item closing`, wrapped after commas if too long. indent: of the wrapped lines."""
    line = opening + ", ".join(items) + closing
    if len(line) <= WIDTH:
        return line
    lines, current = [], indent
    for number, item in enumerate(items):
        item += "," if number < len(items) - 1 else closing
        if current != indent and len(current) + 1 + len(item) > WIDTH:
            lines.append(current)
            current = indent
        current += item if current == indent else " " + item
    return "\n".join([opening.rstrip(), *lines, current])


def head(result, name, parameters, end):
    """Returns the first lines of a function: RESULT NAME(PARAMETERS)END."""
    line = f"{result} {name}({parameters}){end}"
    if len(line) <= WIDTH:
        return line
    return f"{result} {name}(\n    {parameters}){end}" if parameters else f"{result}\n{name}(){end}"


def operation(result, name, parameters, end, body):
    """Returns a function with one statement, on one line if it fits."""
    line = f"{result} {name}({parameters}){end} {{ {body} }}"
    return line if len(line) <= WIDTH else f"{head(result, name, parameters, end + ' {')}\n    {body}\n}}"
