"""The names of the objects in the MIB module."""


def capital(name):
    return name[0].upper() + name[1:]


def table(each):
    return each.name + "Table"


def entry(each):
    return each.name + "Entry"


def row_type(each):
    return capital(entry(each))


def row(each):
    """Returns the name of the index of a table, which is not a column."""
    return each.name + "Row"


def group(each):
    return each.name + "Group"


PRODUCT_GROUP = "tesseraProductGroup"
EVENT_DATA_GROUP = "tesseraEventDataGroup"
NOTIFICATION_GROUP = "tesseraEventGroup"
NOTIFICATION_PREFIX = "tesseraNotifications"
GROUPS = "tesseraGroups"
COMPLIANCES = "tesseraCompliances"
COMPLIANCE = "tesseraCompliance"
FIXED = (PRODUCT_GROUP, EVENT_DATA_GROUP, NOTIFICATION_GROUP, NOTIFICATION_PREFIX, GROUPS, COMPLIANCES, COMPLIANCE)


def all_names(model):
    """Yields (name, place) of everything that the module defines."""
    for each in model.found.nodes.values():
        yield each.name, each.place
    for name in FIXED:
        yield name, model.found.module.place
    for each in model.mib.tables:
        for name in (table(each), entry(each), row(each), group(each)):
            yield name, each.place
    for each in (*model.mib.columns, *model.traps.notifications):
        yield each.name, each.place


def check(model):
    """Raises DataError for a duplicate name, or one that the SMI does not allow."""
    seen = {}
    for name, place in all_names(model):
        if name in seen:
            raise place.error(f"duplicate name '{name}'; first used at {seen[name]}")
        if not name[0].islower() or len(name) > 64:
            raise place.error(f"'{name}' is not a valid name in a MIB module")
        seen[name] = place
