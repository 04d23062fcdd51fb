"""Writes the requests that the daemon makes, as rows for its tables of method classes."""

from codegen.model import classNames
from codegen.writers.output import notice

HEADER = notice("data/mib") + """\
#pragma once

{includes}

/** REQUEST(NAME, OBJECT) for each object whose list can be requested: its name in responses and in classes. */
#define API_LIST_REQUESTS(REQUEST) \\
{lists}

/** The same for each object of which one instance can be requested. */
#define API_INSTANCE_REQUESTS(REQUEST) \\
{instances}
"""


def class_part(name):
    return name[0].upper() + name[1:]


def object_names(model, kind):
    """Returns the objects of these requests, each once: of tables and notifications, then of request lines."""
    if kind == "list":
        found = [refresh.object_name for refresh in model.mib.refreshes]
    else:
        found = [each.api_name for each in model.traps.notifications if each.fresh == "instance"]
    return list(dict.fromkeys(found + [each.object_name for each in model.mib.requests if each.kind == kind]))


def rows(names):
    return " \\\n".join(f'    REQUEST("{name}", {class_part(name)})' for name in names)


def render(model):
    lists, instances = object_names(model, "list"), object_names(model, "instance")
    units = sorted({classNames.unit(class_part(name)) for name in lists + instances})
    return HEADER.format(includes="\n".join(f'#include "{classNames.UNIT_FOLDER}{unit}.h"' for unit in units),
                         lists=rows(lists), instances=rows(instances))
