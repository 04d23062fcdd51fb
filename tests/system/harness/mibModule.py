"""A MIB module of a few lines for Net-SNMP's tools that need one: the tables of the project's list, by name."""

import os

from .mib import MIB

NAME = "ARRAY-TABLES-MIB"
SYNTAX = {"string": "OCTET STRING", "integer": "Integer32", "enumeration": "Integer32", "unsigned": "Unsigned32"}

# It imports nothing: Debian does not have the standard modules.
HEAD = """\
{name} DEFINITIONS ::= BEGIN
arrayTables OBJECT IDENTIFIER ::= {{ {arcs} }}
"""

OBJECT = """\
{name} OBJECT-TYPE SYNTAX {syntax} MAX-ACCESS {access} STATUS current DESCRIPTION "x" {index} ::= {{ {parent} {arc} }}
"""


def capital(name):
    return name[0].upper() + name[1:]


def text_of_object(name, syntax, access, parent, arc, index=""):
    return OBJECT.format(name=name, syntax=syntax, access=access, parent=parent, arc=arc, index=index)


def text_of_table(table):
    entry = table.name + "Entry"
    indexes = [table.name + "Parent", table.name + "Row"] if table.parent != "none" else [table.name + "Row"]
    members = indexes + [column.name for column in table.columns]
    yield text_of_object(table.name + "Table", f"SEQUENCE OF {capital(entry)}", "not-accessible", "arrayTables",
                         table.oid[-1])
    yield text_of_object(entry, capital(entry), "not-accessible", table.name + "Table", 1,
                         f"INDEX {{ {', '.join(indexes)} }}")
    yield f"{capital(entry)} ::= SEQUENCE {{ {', '.join(f'{name} Unsigned32' for name in members)} }}\n"
    # No column of a table carries its own index; these two only tell the tools its shape.
    for arc, name in enumerate(indexes, 1000):
        yield text_of_object(name, "Unsigned32", "not-accessible", entry, arc)
    for column in table.columns:
        yield text_of_object(column.name, SYNTAX[column.type], "read-only", entry, column.oid[-1])


def write(folder):
    """Writes the module and returns the tools' options that make them read it."""
    root = MIB.tables[0].oid[:-1]
    with open(os.path.join(folder, NAME + ".txt"), "w", encoding="utf-8") as file:
        file.write(HEAD.format(name=NAME, arcs="iso " + " ".join(map(str, root[1:]))))
        for table in MIB.tables:
            file.writelines(text_of_table(table))
        file.write("END\n")
    return ["-M", folder, "-m", NAME]
