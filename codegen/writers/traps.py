"""Writes the notifications as C++: one table per kind, and the handlers of the ForceTrap columns."""

from codegen.writers.output import c_string, notice
from codegen.writers.store import colid

SOURCES = "data/mib/notifications.def"

CATALOGUE = notice(SOURCES) + """\
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/trapCatalogue.h"

namespace {{

constexpr int32_t plain_table[] = {{{plain}}};

{columns}

{rows}

{objects}

constexpr notification_definition notification_table[] = {{
{notifications}
}};

constexpr component_definition component_table[] = {{
{components}
}};

constexpr force_definition force_table[] = {{
{forces}
}};

}}  // namespace

const std::span<const int32_t> plain_notifications(plain_table);
const std::span<const notification_definition> notifications(notification_table);
const std::span<const component_definition> components(component_table);
const std::span<const force_definition> forced_notifications(force_table);

const notification_definition* find_notification(int32_t number) {{
    for (const notification_definition& each : notifications) {{
        if (each.number == number)
            return &each;
    }}
    return nullptr;
}}

const component_definition* find_component(int32_t trapNum, int32_t number) {{
    for (const component_definition& each : components) {{
        if (each.trapNum == trapNum && each.number == number)
            return &each;
    }}
    return nullptr;
}}
"""

HANDLERS_HEADER = notice(SOURCES) + """\
#pragma once

#include <cstdint>

/** The set_fn of the ForceTrap columns. var_index: the written variable. They return 0 on success. */
{declarations}
"""

HANDLERS = notice(SOURCES) + """\
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/forceTrapHandlers.h"

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/forceTrap.h"

{handlers}
"""


def colid_or_none(column):
    return colid(column) if column is not None else "-1"


def enumerator(kind, word):
    return f"{kind}::{word.replace('-', '_')}"


def texts(state, *keys):
    return ", ".join(c_string(state.texts.get(key, "")) for key in keys)


def render_state(state):
    return (f"{{{enumerator('row_rule', state.find)}, {colid_or_none(state.index_column)}, {colid(state.status)}, "
            f"{colid(state.owner)}, {colid(state.verify)},\n     "
            f"{texts(state, 'unknown', 'too-large', 'missing', 'unhealthy')}}}")


def render_list(name, columns):
    return f"constexpr int {name}[] = {{{', '.join(map(colid, columns))}}};"


def render_object(each):
    return (f"constexpr object_rule object_{each.number} = {{\n    {render_state(each.state)},\n    "
            f"{enumerator('fresh_rule', each.fresh)}, {c_string(each.api_name)}, rows_{each.number}, "
            f"{'true' if each.clears_when_up else 'false'},\n    {texts(each.state, 'no-index', 'not-up')}}};")


def render_notification(each):
    return (f"    {{{each.number}, {c_string(each.name)}, {c_string(each.word)}, {c_string(each.description)},\n     "
            f"{c_string(each.argument)}, columns_{each.number}, {f'&object_{each.number}' if each.state else 'nullptr'}}},")


def render_level(level):
    if level is None:
        return '{-1, -1, ""}'
    return f"{{{colid(level[0])}, {colid(level[1])}, {c_string(level[2])}}}"


def render_component(each):
    return (f"    {{{each.trap}, {each.number}, {c_string(each.word)}, {c_string(each.description)}, "
            f"{c_string(each.argument)},\n     {render_state(each.state)},\n     {texts(each.state, 'down', 'degraded')},\n"
            f"     {render_level(each.levels.get('low'))},\n     {render_level(each.levels.get('high'))}}},")


def render_force(each):
    return (f"    {{{colid(each.column)}, {each.trap}, {enumerator('force_rule', each.rule)}, {each.component}, "
            f"{colid_or_none(each.index_column)}, {c_string(each.event_id)}, {c_string(each.word)}}},")


def render_catalogue(traps):
    with_object = [each for each in traps.notifications if each.state]
    return CATALOGUE.format(
        plain=", ".join(map(str, traps.plain)),
        columns="\n".join(render_list(f"columns_{each.number}", each.columns) for each in traps.notifications),
        rows="\n".join(render_list(f"rows_{each.number}", each.rows) for each in with_object),
        objects="\n\n".join(map(render_object, with_object)),
        notifications="\n".join(map(render_notification, traps.notifications)),
        components="\n".join(map(render_component, traps.components)),
        forces="\n".join(map(render_force, traps.forces)))


def render_handlers_header(traps):
    return HANDLERS_HEADER.format(
        declarations="\n".join(f"int {each.column.name}_set(int32_t var_index);" for each in traps.forces))


def render_handlers(traps):
    return HANDLERS.format(handlers="\n\n".join(
        f"int {each.column.name}_set(int32_t var_index) {{\n"
        f"    return force_notification(forced_notifications[{number}], var_index);\n}}"
        for number, each in enumerate(traps.forces)))
