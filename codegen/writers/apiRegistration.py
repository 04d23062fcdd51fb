"""Writes the entries of the factories as one unit, so that programs without factories need not link it."""

from codegen.model import classNames as names
from codegen.writers.cppLayout import WIDTH
from codegen.writers.output import notice

REGISTRATION = notice("data/api/objects and data/api/methodObjects.def") + """\
{includes}
#include "apiMgmt/apiStub/base/apiObjects/base/apiMethodReturn.h"
#include "apiMgmt/apiStub/base/apiObjects/base/apiObjectFactory.h"

namespace {{

template <class Object>
using OfObject = REGISTERClass<BASEApiObject, Object>;
template <class Method>
using OfMethod = REGISTERClass<BASEApiMethod, Method>;
template <class MethodObject>
using OfMethodObject = REGISTERClass<BASEApiMethodObject, MethodObject>;

{entries}

}}  // namespace
"""


def entry(kind, cls, variable, key):
    line = f'const {kind}<{cls}> {variable}("{key}");'
    if len(line) > WIDTH:
        line = line.replace("> ", ">\n    ", 1)
    if len(line.split("\n")[-1]) > WIDTH:
        line = line.replace("(", "(\n        ")
    return line


def render_object(each):
    cls = names.object_class(each.name)
    lines = [entry("OfObject", cls, names.variable(each.name), each.name)]
    for command in each.commands:
        method = names.method_class(each.name, command.name)
        lines.append(entry("OfMethod", f"{cls}::{method}", names.variable(each.name) + command.name, method))
    return "\n".join(lines)


def render(catalogue):
    units = [names.unit(each.name) for each in catalogue.objects] + [names.METHOD_OBJECT_UNIT]
    entries = [render_object(each) for each in catalogue.objects]
    entries.append("\n".join(
        entry("OfMethodObject", names.object_class(each.name), names.variable(each.name), each.name)
        for each in catalogue.method_objects))
    return REGISTRATION.format(
        includes="\n".join(f'#include "{names.UNIT_FOLDER}{unit}.h"' for unit in sorted(units)),
        entries="\n\n".join(entries))
