"""Writes the layout of the store as C++: facts, and one-line functions that call hand-written code."""

from codegen.writers.output import c_string, notice

DATA_TYPE = {"string": "SMI_BASETYPE_OCTET_STRING", "integer": "SMI_BASETYPE_INTEGER32",
             "unsigned": "SMI_BASETYPE_UNSIGNED32", "enumeration": "SMI_BASETYPE_ENUM"}
PARENT_FLAG = {"": "0", "controller": "COL_FLAG_controller_parent", "enclosure": "COL_FLAG_enclosure_parent"}

SOURCES = "data/mib/columns.def"

HEADER = notice(SOURCES) + """\
#pragma once

/** The columns of the MIB, in the order of their OIDs. */
enum column_id : int {{
{ids}
}};

inline constexpr int NUMBER_OF_COLUMNS = {columns};

/** Number of tables with their own refresh. */
inline constexpr int NUMBER_OF_REFRESHES = {refreshes};

/** Number of entries of `vars`: all instances that the MIB can ever contain. */
inline constexpr int MAX_total_vars = {variables};
"""

SOURCE = notice(SOURCES) + """\
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibDefinition.h"

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/folderUsage.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/postProcess.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/tableRefresh.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/setRequest.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/forceTrap.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/forceTrapHandlers.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibValues.h"

namespace {{

int refresh_table(const refresh_operation& operation, bool background) {{
    return get_table_info(operation.col_id, operation.apiName, operation.map_size, operation.map, background);
}}

{oids}

{maps}

{get_fns}

}}  // namespace

const refresh_operation refresh_operations[NUMBER_OF_REFRESHES] = {{
{refreshes}
}};

const column_definition column_definitions[NUMBER_OF_COLUMNS] = {{
{definitions}
}};
"""


def colid(column):
    return f"COLID_{column.name}"


def render_header(mib):
    ids = "\n".join(f"    {colid(c)} = {c.number}," for c in mib.columns)
    return HEADER.format(ids=ids, columns=len(mib.columns), refreshes=len(mib.refreshes), variables=mib.total_variables())


def render_map(refresh):
    rows = "\n".join(
        "    {{{}, {}, {}}},".format(c_string(e.attribute), colid(e.column),
                                    e.post_process + "_post_process" if e.post_process else "nullptr")
        for e in refresh.entries)
    return f"const attribute_map_entry map_{refresh.table.name}[] = {{\n{rows}\n}};"


def scalar_get_fn(column):
    """Returns the body of a scalar's own get_fn, or None if another refresh fills it."""
    if column.source == "constant":
        if column.type == "string":
            return f"store_text(var_index, {c_string(column.argument)})"
        return f"store_number(var_index, {column.argument})"
    if column.source == "copy":
        return f"store_text(var_index, vars[cols[COLID_{column.argument}].first_var].str)"
    if column.source == "process":
        return f"{'store_text' if column.type == 'string' else 'store_number'}(var_index, {column.name})"
    return None


def render_get_fns(mib):
    lines = []
    for column in mib.columns:
        body = scalar_get_fn(column)
        if body:
            lines.append(f"int get_{column.name}(int32_t var_index, bool) {{ return {body}; }}")
    for number, refresh in enumerate(mib.refreshes):
        name = refresh.table.name
        lines.append(f"int get_{name}(int32_t, bool background) {{ "
                     f"return refresh_table(refresh_operations[{number}], background); }}")
    return "\n".join(lines)


def render_refresh(refresh):
    return (f"    {{{colid(refresh.table.columns[0])}, {c_string(refresh.object_name)}, {len(refresh.entries)}, "
            f"map_{refresh.table.name}}},")


def get_fn_name(column):
    if column.table:
        return f"get_{column.table.name}" if column.table.refresh else "nullptr"
    if column.source == "computed":
        return column.argument
    return f"get_{column.name}" if scalar_get_fn(column) else "nullptr"


def render_definition(column):
    table = column.table
    layout = f"{table.parents}, {table.rows}, {table.minimum}, {PARENT_FLAG[table.parent_item]}" if table else "0, 0, 1, 0"
    first = "true" if column.is_first_of_table() else "false"
    return (f"    {{{c_string(column.name)}, oid_{column.name}, {len(column.oid)}, {DATA_TYPE[column.type]}, "
            f"{'true' if table else 'false'}, {first}, {layout}, {get_fn_name(column)}, {column.set_fn or 'nullptr'}}},")


def render_source(mib):
    return SOURCE.format(
        oids="\n".join(f"const oid oid_{c.name}[] = {{{', '.join(map(str, c.oid))}}};" for c in mib.columns),
        maps="\n\n".join(render_map(r) for r in mib.refreshes),
        get_fns=render_get_fns(mib),
        refreshes="\n".join(render_refresh(r) for r in mib.refreshes),
        definitions="\n".join(render_definition(c) for c in mib.columns))
