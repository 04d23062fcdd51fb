"""Writes the enumerations as C++: one constant array per table."""

import os

from codegen.writers.output import c_string, notice

HEADER = notice("data/api/enumerations") + """\
#pragma once

#include "apiMgmt/apiStub/base/apiAttributes/enumRow.h"

/** The enumerations of the array's API. Constants, so they can be used before main starts. */
class APIEnumsIDStrList {{
  public:
    APIEnumsIDStrList() = delete;

{declarations}

    /** All enumerations, in the order of the data files. */
    static const ENUMNamedTable gAllEnumTables[{count}];
}};
"""

SOURCE = notice("data/api/enumerations") + """\
#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiEnumsIDStrList.h"

{definitions}

constinit const ENUMNamedTable APIEnumsIDStrList::gAllEnumTables[{count}] = {{
{names}
}};
"""


def array(table):
    return f"g{table.name}EnumIdStrList"


def render_header(tables):
    declarations, file = [], None
    for table in tables:
        if table.place.file != file:
            file = table.place.file
            declarations.append(f"    // {os.path.basename(file)}")
        declarations.append(f"    static const ENUMRow {array(table)}[{table.size}];")
    return HEADER.format(declarations="\n".join(declarations), count=len(tables))


def render_row(row):
    # On the wire and in every client, human-readable strings are in ISO-8859-1.
    ui_string = c_string(row.ui_string, "iso-8859-1")
    return f"    {{{row.value}, {c_string(row.description)}, {ui_string}}},"


def render_table(table):
    rows = "\n".join(render_row(row) for row in table.rows)
    return f"constinit const ENUMRow APIEnumsIDStrList::{array(table)}[{table.size}] = {{\n{rows}\n}};"


def render_source(tables):
    names = "\n".join(f"    {{{c_string(table.name)}, {array(table)}}}," for table in tables)
    return SOURCE.format(definitions="\n\n".join(map(render_table, tables)), count=len(tables), names=names)
