"""Lines of C++ that keep within the width of the sources."""

import textwrap

WIDTH = 110


def comment(text, indent=""):
    """A documentation comment: one line when it fits, else a block."""
    line = f"{indent}/** {text} */"
    if len(line) <= WIDTH:
        return line
    wrapped = textwrap.wrap(text, WIDTH - len(indent) - 3, break_on_hyphens=False)
    return "\n".join([f"{indent}/**", *(f"{indent} * {each}" for each in wrapped), f"{indent} */"])


def joined(opening, items, closing, indent):
    """opening item, item closing; wrapped behind commas when it is too long. indent: of what is wrapped."""
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
    """The first line or lines of a function: RESULT NAME(PARAMETERS)END."""
    line = f"{result} {name}({parameters}){end}"
    if len(line) <= WIDTH:
        return line
    return f"{result} {name}(\n    {parameters}){end}" if parameters else f"{result}\n{name}(){end}"


def operation(result, name, parameters, end, body):
    """A function of one statement: on one line when that fits."""
    line = f"{result} {name}({parameters}){end} {{ {body} }}"
    return line if len(line) <= WIDTH else f"{head(result, name, parameters, end + ' {')}\n    {body}\n}}"
