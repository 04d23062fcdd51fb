"""Writes the daemon's table of settings, and the manual page with the same table."""

from codegen.reader import DataError
from codegen.writers.output import c_string, notice

SOURCES = "data/daemon"
MARK = "@SETTINGS@\n"


def render_row(each):
    default = each.default if each.type == "number" else c_string(each.default) if each.default else ""
    arguments = f"value, {default}" if default else "value"
    return (f"{{{c_string(each.name)}, conf_type::{each.type}, {'true' if each.secret else 'false'},\n"
            f" [](const found_value& value) {{ {each.variable} = read_{each.type}({arguments}); }}}},")


def render_rows(settings):
    return notice(SOURCES) + "\n".join(map(render_row, settings)) + "\n"


def render_items(settings):
    names = []
    for each in settings:
        names.append(f"Ic {each.name}")
        if each.manual:
            yield f".It {' , '.join(names)}"
            yield from each.manual
            yield f"The default is {each.missing()}."
            names = []


def render_page(settings, page):
    """page: the manual page around the list of settings."""
    if page.count(MARK) != 1:
        raise DataError(f"data/daemon/snmpSubagent.conf.5: expected exactly one line {MARK.strip()}")
    items = "".join(f"{line}\n" for line in render_items(settings))
    return notice(SOURCES, '.\\"') + page.replace(MARK, items)
