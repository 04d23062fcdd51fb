"""Writes the MIB module, and the small one of the older number."""

from . import names, sentences, smiText

ANY_TEXT = "OCTET STRING (SIZE (0..65535))"
SYNTAX = {"string": "OCTET STRING", "integer": "Integer32", "unsigned": "Unsigned32"}
BASE = [(("MODULE-IDENTITY", "OBJECT-IDENTITY", "OBJECT-TYPE", "NOTIFICATION-TYPE", "Integer32", "Unsigned32",
          "enterprises"), "SNMPv2-SMI"), (("TEXTUAL-CONVENTION",), "SNMPv2-TC"),
        (("MODULE-COMPLIANCE", "OBJECT-GROUP", "NOTIFICATION-GROUP"), "SNMPv2-CONF")]
OLDER_BASE = [(("MODULE-IDENTITY", "enterprises"), "SNMPv2-SMI")]


class Renderer:
    def __init__(self, mib, traps, found):
        self.mib, self.traps, self.found = mib, traps, found
        self.root = mib.tables[0].oid[:-1]
        self.columns = [column for column in mib.columns if column.oid[:len(self.root)] == self.root]

    def node_at(self, oid):
        return next(name for name, node in self.found.nodes.items() if node.oid == oid)

    def nodes(self):
        for node in self.found.nodes.values():
            if node.name != self.found.module.identity:
                yield smiText.node(node.name, f"{node.parent} {node.oid[-1]}", node.paragraphs())
        yield smiText.node(names.NOTIFICATION_PREFIX, f"{self.found.events} 0", [])
        yield smiText.node(names.GROUPS, f"{self.found.conformance} 1", [])
        yield smiText.node(names.COMPLIANCES, f"{self.found.conformance} 2", [])

    def conventions(self):
        for each in self.found.conventions.values():
            if each.is_text():
                yield smiText.convention(each.name, ANY_TEXT, each.paragraphs(), each.option("hint"))
                continue
            *before, last = each.paragraphs()
            meanings = [f"{value.label}({value.number}): {value.meaning}" for value in each.values]
            values = [f"{value.label}({value.number})" for value in each.values]
            yield smiText.convention(each.name, "INTEGER " + smiText.listed(values, 24), [*before, [last, *meanings]])

    def syntax(self, column):
        own = self.found.columns[column.name].option("syntax")
        return own or (self.found.text_convention().name if column.type == "string" else SYNTAX[column.type])

    def paragraphs_of_column(self, column):
        entry = self.found.columns[column.name]
        first, *rest = entry.paragraphs()
        behind = []
        if column.table is not None:
            of_table = self.found.tables[column.table.name]
            if column.is_first_of_table():
                behind.append(sentences.about_row(column.table, of_table))
            behind.append(sentences.about_forcing(column, of_table, self.traps))
        convention = self.found.conventions.get(self.syntax(column))
        behind.append(sentences.about_kind_on_the_wire(column, convention, self.traps))
        return [" ".join(filter(None, [first, *behind])), *rest]

    def column(self, column, place):
        return smiText.object_type(column.name, self.syntax(column), "read-write" if column.set_fn else "read-only",
                                   self.paragraphs_of_column(column), place,
                                   units=self.found.columns[column.name].option("units"))

    def indexes(self, table):
        parent = [each for each in self.mib.tables if each.name == sentences.PARENT_TABLE.get(table.parent)]
        return [names.row(each) for each in (*parent, table)]

    def paragraphs_of_table(self, table):
        entry = self.found.tables[table.name]
        first, *rest = entry.paragraphs()
        return [f"{first} {sentences.about_table(table, entry)}", *rest]

    def table(self, table):
        entry = self.found.tables[table.name]
        one = f"One {entry.option('object')}."
        if table.parent != "none":
            one += " " + sentences.about_parent_index(table)
        yield smiText.object_type(names.table(table), f"SEQUENCE OF {names.row_type(table)}", "not-accessible",
                                  self.paragraphs_of_table(table), f"{self.node_at(self.root)} {table.oid[-1]}")
        yield smiText.object_type(names.entry(table), names.row_type(table), "not-accessible", [one],
                                  f"{names.table(table)} 1", index=f"{{ {', '.join(self.indexes(table))} }}")
        members = [(names.row(table), SYNTAX["unsigned"])] + [(c.name, self.syntax(c)) for c in table.columns]
        width = max(len(name) for name, _ in members)
        yield f"{names.row_type(table)} ::= SEQUENCE {{\n" + \
              ",\n".join(f"    {name:<{width}}  {syntax}" for name, syntax in members) + "\n}\n"
        index = f"The row number of the {entry.option('object')}. {sentences.about_row(table, entry)}"
        yield smiText.object_type(names.row(table), f"Unsigned32 (1..{table.rows})", "not-accessible", [index],
                                  f"{names.entry(table)} 1")
        for column in table.columns:
            yield self.column(column, f"{names.entry(table)} {column.oid[-1]}")

    def objects(self):
        for column in self.columns:
            if column.table is None:
                yield self.column(column, f"{self.node_at(self.root)} {column.oid[-1]}")
            elif column.is_first_of_table():
                yield from self.table(column.table)

    def paragraphs_of_notification(self, each):
        first, *rest = self.found.notifications[each.name].paragraphs()
        return [f"{each.description} {first}", *rest, *sentences.about_notification(each, self.traps)]

    def notifications(self):
        for each in self.traps.notifications:
            yield smiText.notification_type(each.name, [column.name for column in each.columns],
                                            self.paragraphs_of_notification(each),
                                            f"{names.NOTIFICATION_PREFIX} {each.number}")

    def object_groups(self):
        """(name, arc, text, members). The arc of a table's group is that of the table, so that none ever moves."""
        scalars = [column for column in self.columns if column.table is None]
        yield (names.PRODUCT_GROUP, 1, "The product and its state as a whole.",
               [column.name for column in scalars if column.source != "process"])
        yield (names.EVENT_DATA_GROUP, 2, "What notifications carry beside the state of an object.",
               [column.name for column in scalars if column.source == "process"])
        for table in self.mib.tables:
            yield (names.group(table), table.oid[-1], f"The columns of {names.table(table)}.",
                   [column.name for column in table.columns])

    def groups(self):
        groups = [each for each in self.object_groups() if each[3]]
        for name, arc, text, members in groups:
            yield smiText.group("OBJECT-GROUP", name, "OBJECTS", members, text, f"{names.GROUPS} {arc}")
        yield smiText.group("NOTIFICATION-GROUP", names.NOTIFICATION_GROUP, "NOTIFICATIONS",
                            [each.name for each in self.traps.notifications], "All notifications of this module.",
                            f"{names.GROUPS} 3")
        yield smiText.compliance(names.COMPLIANCE, [each[0] for each in groups] + [names.NOTIFICATION_GROUP],
                                 "Every array has all of it, though some tables may be empty.", f"{names.COMPLIANCES} 1")

    def module(self):
        found = self.found
        identity = found.nodes[found.module.identity]
        head = smiText.module_identity(identity.name, found.module.organization, found.contact, found.revisions,
                                       found.module.paragraphs(), f"{identity.parent} {identity.oid[-1]}")
        parts = [head, *self.nodes(), *self.conventions(), *self.objects(), *self.notifications(), *self.groups()]
        return smiText.module(found.module.name, "columns.def, traps.def and the descriptions", BASE, parts)

    def older_module(self):
        found = self.found
        head = smiText.module_identity(found.older.identity, found.module.organization, found.contact,
                                       found.revisions, found.older.paragraphs(), f"enterprises {found.older.arc}")
        return smiText.module(found.older.name, "the descriptions", OLDER_BASE, [head])
