"""Writes the MIB module, and the small one for the old enterprise number."""

from codegen.model import moduleNames as names
from codegen.model.snmp import SYNTAX
from codegen.writers import sentences, smi

ANY_TEXT = "OCTET STRING (SIZE (0..65535))"
BASE = [(("MODULE-IDENTITY", "OBJECT-IDENTITY", "OBJECT-TYPE", "NOTIFICATION-TYPE", "Integer32", "Unsigned32",
          "enterprises"), "SNMPv2-SMI"), (("TEXTUAL-CONVENTION",), "SNMPv2-TC"),
        (("MODULE-COMPLIANCE", "OBJECT-GROUP", "NOTIFICATION-GROUP"), "SNMPv2-CONF")]
OLDER_BASE = [(("MODULE-IDENTITY", "enterprises"), "SNMPv2-SMI")]


class Renderer:
    def __init__(self, model):
        self.model, self.mib, self.traps, self.found = model, model.mib, model.traps, model.found
        self.root = self.mib.tables[0].oid[:-1]
        self.columns = [column for column in self.mib.columns if column.oid[:len(self.root)] == self.root]

    def node_at(self, oid):
        return next(name for name, node in self.found.nodes.items() if node.oid == oid)

    def nodes(self):
        for node in self.found.nodes.values():
            if node.name != self.found.module.identity:
                yield smi.node(node.name, f"{node.parent} {node.oid[-1]}", node.paragraphs())
        yield smi.node(names.NOTIFICATION_PREFIX, f"{self.found.events} 0", [])
        yield smi.node(names.GROUPS, f"{self.found.conformance} 1", [])
        yield smi.node(names.COMPLIANCES, f"{self.found.conformance} 2", [])

    def conventions(self):
        for each in self.found.conventions.values():
            if each.is_text():
                yield smi.convention(each.name, ANY_TEXT, each.paragraphs(), each.option("hint"))
                continue
            *before, last = each.paragraphs()
            meanings = [f"{value.label}({value.number}): {value.meaning}" for value in each.values]
            values = [f"{value.label}({value.number})" for value in each.values]
            yield smi.convention(each.name, "INTEGER " + smi.listed(values, 24), [*before, [last, *meanings]])

    def paragraphs_of_column(self, column):
        first, *rest = column.paragraphs()
        behind = []
        if column.table is not None:
            if column.is_first_of_table():
                behind.append(sentences.about_row(column.table))
            behind.append(sentences.about_forcing(column, self.traps))
        behind.append(sentences.about_kind_on_the_wire(column, self.model.convention(column), self.traps))
        return [" ".join(filter(None, [first, *behind])), *rest]

    def column(self, column, place):
        return smi.object_type(column.name, self.model.syntax(column),
                               "read-write" if column.set_fn else "read-only", self.paragraphs_of_column(column),
                               place, units=column.units)

    def indexes(self, table):
        return [names.row(each) for each in (table.parent, table) if each]

    def paragraphs_of_table(self, table):
        first, *rest = table.paragraphs()
        return [f"{first} {sentences.about_table(table)}", *rest]

    def table(self, table):
        one = f"One {table.item}."
        if table.parent:
            one += " " + sentences.about_parent_index(table)
        yield smi.object_type(names.table(table), f"SEQUENCE OF {names.row_type(table)}", "not-accessible",
                                  self.paragraphs_of_table(table), f"{self.node_at(self.root)} {table.oid[-1]}")
        yield smi.object_type(names.entry(table), names.row_type(table), "not-accessible", [one],
                                  f"{names.table(table)} 1", index=f"{{ {', '.join(self.indexes(table))} }}")
        members = [(names.row(table), SYNTAX["unsigned"])] + [(c.name, self.model.syntax(c)) for c in table.columns]
        width = max(len(name) for name, _ in members)
        yield f"{names.row_type(table)} ::= SEQUENCE {{\n" + \
              ",\n".join(f"    {name:<{width}}  {syntax}" for name, syntax in members) + "\n}\n"
        index = f"The row number of the {table.item}. {sentences.about_row(table)}"
        yield smi.object_type(names.row(table), f"Unsigned32 (1..{table.rows})", "not-accessible", [index],
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
        first, *rest = each.paragraphs()
        return [f"{each.description} {first}", *rest, *sentences.about_notification(each, self.traps)]

    def notifications(self):
        for each in self.traps.notifications:
            yield smi.notification_type(each.name, [column.name for column in each.columns],
                                        self.paragraphs_of_notification(each),
                                        f"{names.NOTIFICATION_PREFIX} {each.number}")

    def object_groups(self):
        """Yields (name, arc, text, members). A group has the arc of its table, so that none is ever renumbered."""
        scalars = [column for column in self.columns if column.table is None]
        yield (names.PRODUCT_GROUP, 1, "The product and its overall state.",
               [column.name for column in scalars if column.source != "process"])
        yield (names.EVENT_DATA_GROUP, 2, "Data that notifications carry in addition to the state of an object.",
               [column.name for column in scalars if column.source == "process"])
        for table in self.mib.tables:
            yield (names.group(table), table.oid[-1], f"The columns of {names.table(table)}.",
                   [column.name for column in table.columns])

    def groups(self):
        groups = [each for each in self.object_groups() if each[3]]
        for name, arc, text, members in groups:
            yield smi.group("OBJECT-GROUP", name, "OBJECTS", members, text, f"{names.GROUPS} {arc}")
        yield smi.group("NOTIFICATION-GROUP", names.NOTIFICATION_GROUP, "NOTIFICATIONS",
                        [each.name for each in self.traps.notifications], "All notifications of this module.",
                        f"{names.GROUPS} 3")
        yield smi.compliance(names.COMPLIANCE, [each[0] for each in groups] + [names.NOTIFICATION_GROUP],
                             "Every array implements all groups, but tables may be empty.", f"{names.COMPLIANCES} 1")

    def module(self):
        found = self.found
        identity = found.nodes[found.module.identity]
        head = smi.module_identity(identity.name, found.module.organization, found.contact, found.revisions,
                                       found.module.paragraphs(), f"{identity.parent} {identity.oid[-1]}")
        parts = [head, *self.nodes(), *self.conventions(), *self.objects(), *self.notifications(), *self.groups()]
        return smi.module(found.module.name, BASE, parts)

    def older_module(self):
        found = self.found
        head = smi.module_identity(found.older.identity, found.module.organization, found.contact,
                                       found.revisions, found.older.paragraphs(), f"enterprises {found.older.arc}")
        return smi.module(found.older.name, OLDER_BASE, [head])
