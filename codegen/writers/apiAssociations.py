"""Writes the associations of all objects as one table."""

from codegen.model import classNames as names
from codegen.writers.cppLayout import joined
from codegen.writers.output import c_string, notice

SOURCE = notice("data/api/objects") + """\
#include "{folder}apiAssociations.h"

{includes}

namespace {{

template <class Association>
std::unique_ptr<BASEApiAssociation> Create() {{
    return std::make_unique<Association>();
}}

constexpr ASSOCIATIONEntry kAssociations[] = {{
{entries}
}};

}}  // namespace

std::span<const ASSOCIATIONEntry> GetAssociations() {{
    return kAssociations;
}}

std::unique_ptr<BASEApiAssociation> CreateAssociation(std::string_view object, std::string_view relation) {{
    for (const ASSOCIATIONEntry& entry : kAssociations) {{
        if (entry.relation == relation && entry.object == object)
            return entry.create();
    }}
    return nullptr;
}}
"""


def entry(owner, relation):
    cls = f"{names.object_class(owner)}::{names.association_class(owner, relation)}"
    return joined("    {", [c_string(owner), c_string(relation), f"Create<{cls}>"], "},", " " * 5)


def render(catalogue):
    related = [each for each in catalogue.objects if each.associations]
    units = sorted(names.unit(each.name) for each in related)
    return SOURCE.format(folder=names.UNIT_FOLDER,
                         includes="\n".join(f'#include "{names.UNIT_FOLDER}{unit}.h"' for unit in units),
                         entries="\n".join(entry(each.name, relation) for each in related
                                           for relation in each.associations))
