"""Writes the human-readable reference: all objects and notifications with the descriptions of the module."""

from codegen.writers.output import dotted, markdown_notice

HEAD = markdown_notice("data/mib") + """\
# Reference of {name}

{about}
"""


def cell(text):
    return text.replace("|", "\\|")


def plain(paragraph):
    """Returns a paragraph as Markdown. A list consists of a heading and its items."""
    return paragraph if isinstance(paragraph, str) else "\n- ".join([paragraph[0] + "\n", *paragraph[1:]])


def joined(paragraphs):
    return cell("<br>".join(paragraphs))


def table_of(rows, head):
    lines = [head, tuple("---" for _ in head), *rows]
    return "\n".join("| " + " | ".join(line) + " |" for line in lines) + "\n"


class Reference:
    def __init__(self, renderer):
        self.one, self.found = renderer, renderer.found

    def row(self, column):
        kind = self.one.model.syntax(column) + (f", {column.units}" if column.units else "") + (", writable" if column.set_fn else "")
        return (f"`{column.name}`", f"`{dotted(column.oid)}`", kind, joined(self.one.paragraphs_of_column(column)))

    def objects(self, columns):
        return table_of([self.row(column) for column in columns], ("Name", "OID", "Type", "Meaning"))

    def scalars(self):
        return self.objects([column for column in self.one.mib.columns if column.table is None])

    def tables(self):
        for table in self.one.mib.tables:
            yield (f"### {table.name}Table\n\n" + "\n\n".join(self.one.paragraphs_of_table(table)) +
                   f"\n\nIndexed by {', then '.join(f'`{name}`' for name in self.one.indexes(table))}.\n\n" +
                   self.objects(table.columns))

    def notifications(self):
        base = self.one.model.events()
        for each in self.one.traps.notifications:
            yield (f"### {each.name}\n\nNumber {each.number}, `{dotted(base + (0, each.number))}`.\n\n" +
                   "\n\n".join(map(plain, self.one.paragraphs_of_notification(each))) + "\n\nCarries " +
                   ", ".join(f"`{column.name}`" for column in each.columns) + ".\n")

    def conventions(self):
        for each in self.found.conventions.values():
            yield f"### {each.name}\n\n" + "\n\n".join(each.paragraphs()) + "\n"
            if each.values:
                yield table_of([(str(value.number), f"`{value.label}`", cell(value.meaning)) for value in each.values],
                               ("Number", "Name", "Meaning"))

    def page(self):
        return "\n".join([HEAD.format(name=self.found.module.name, about="\n\n".join(self.found.module.paragraphs())),
                          "## Scalars\n", self.scalars(), "## Tables\n", *self.tables(),
                          "## Notifications\n", *self.notifications(), "## Types\n", *self.conventions()])
