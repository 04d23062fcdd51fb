"""The syntax of SMIv2: one function per construct."""

import textwrap

from codegen.writers.output import notice

WIDTH = 100


def wrapped(paragraph, width):
    """Returns the lines of a paragraph. A list consists of a heading and its items."""
    points = [paragraph] if isinstance(paragraph, str) else [paragraph[0], *(f"- {point}" for point in paragraph[1:])]
    return [line for point in points
            for line in textwrap.wrap(point, width, break_on_hyphens=False,
                                      subsequent_indent="  " if point.startswith("- ") else "")]


def quoted(paragraphs, indent):
    """Returns a quoted string of paragraphs, with lines after the first indented by one more."""
    lines = []
    for paragraph in paragraphs:
        lines += ([""] if lines else []) + wrapped(paragraph, WIDTH - indent)
    margin = " " * (indent + 1)
    return '"' + "\n".join(margin + line if line and number else line for number, line in enumerate(lines)) + '"'


def description(paragraphs):
    return f"    DESCRIPTION\n        {quoted(paragraphs, 8)}\n"


def listing(words, indent):
    """Returns names separated by commas, wrapped."""
    lines = textwrap.wrap(", ".join(words), WIDTH - indent, break_on_hyphens=False)
    return ("\n" + " " * indent).join(lines)


def listed(words, indent):
    """Returns the same in braces; the first is at the indent."""
    return "{ " + listing(words, indent + 2) + " }"


def clause(word, text):
    return f"    {word:<11} {text}\n" if text else ""


def object_type(name, syntax, access, paragraphs, place, units="", index=""):
    return (f"{name} OBJECT-TYPE\n" + clause("SYNTAX", syntax) + clause("UNITS", units and f'"{units}"') +
            clause("MAX-ACCESS", access) + clause("STATUS", "current") + description(paragraphs) +
            clause("INDEX", index) + f"    ::= {{ {place} }}\n")


def node(name, place, paragraphs):
    """Returns a node: an OBJECT-IDENTITY if it has a description, else an OBJECT IDENTIFIER."""
    if not paragraphs:
        return f"{name} OBJECT IDENTIFIER ::= {{ {place} }}\n"
    return (f"{name} OBJECT-IDENTITY\n" + clause("STATUS", "current") + description(paragraphs) +
            f"    ::= {{ {place} }}\n")


def convention(name, syntax, paragraphs, hint=""):
    return (f"{name} ::= TEXTUAL-CONVENTION\n" + clause("DISPLAY-HINT", hint and f'"{hint}"') +
            clause("STATUS", "current") + description(paragraphs) + clause("SYNTAX", syntax))


def notification_type(name, objects, paragraphs, place):
    return (f"{name} NOTIFICATION-TYPE\n" + clause("OBJECTS", listed(objects, 16)) + clause("STATUS", "current") +
            description(paragraphs) + f"    ::= {{ {place} }}\n")


def group(kind, name, word, members, text, place):
    return (f"{name} {kind}\n" + clause(word, listed(members, 16)) + clause("STATUS", "current") +
            description([text]) + f"    ::= {{ {place} }}\n")


def compliance(name, groups, text, place):
    return (f"{name} MODULE-COMPLIANCE\n" + clause("STATUS", "current") + description([text]) +
            f"    MODULE\n        MANDATORY-GROUPS {listed(groups, 25)}\n    ::= {{ {place} }}\n")


def module_identity(name, organization, contact, revisions, paragraphs, place):
    """revisions: (date, text) pairs, the latest first."""
    text = (f"{name} MODULE-IDENTITY\n    LAST-UPDATED \"{revisions[0][0]}\"\n"
            f"    ORGANIZATION\n        {quoted([organization], 8)}\n"
            f"    CONTACT-INFO\n        {quoted([contact], 8)}\n" + description(paragraphs))
    for date, what in revisions:
        text += f"    REVISION    \"{date}\"\n" + description([what])
    return text + f"    ::= {{ {place} }}\n"


def module(name, imports, parts):
    """imports: (names, module) pairs. parts: definitions, each of which ends in a line break."""
    lines = [f"    {listing(words, 4)}\n        FROM {origin}" for words, origin in imports]
    return (notice("data/mib", "--") + f"\n{name} DEFINITIONS ::= BEGIN\n\nIMPORTS\n" + "\n".join(lines) + ";\n\n" +
            "\n".join(parts) + "\nEND\n")
