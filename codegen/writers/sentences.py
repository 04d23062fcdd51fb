"""Sentences about all columns, tables or notifications of a kind, so that descriptions in the data contain only what is
special."""

PACE = {"seconds": "Read from the array about every 40 seconds.",
        "minutes": "Read from the array about every two to three minutes."}
FORCING = ("Set it to ForceTrap, spelt exactly so, to send a {} as if the array had reported the event. The response "
           "to the SET precedes the notification. Nothing is sent while notifications are switched off, or if the same "
           "problem has already been notified.")
FORCED = "Reads 'Empty', or 'ForceTrap' from a SET to the next refresh. Other strings are rejected with badValue."
ONCE = ("Sent once when the status changes, not for each report of the array. An object that is not up is read again "
        "about once a minute, for a week at most, and its recovery is sent with trapAlertState cleared(1).")


def about_row(table):
    """Describes the row number, as index and as column."""
    if table.rows == 1 and not table.parent:
        return "Always 1."
    among = f", counted separately for each {table.parent_item}" if table.parent else ""
    text = f"Row numbers are positions in the array's latest response{among}: another {table.item} may have " \
           "this one after the next refresh."
    return text + (f" {table.identity} does not change." if table.identity else "")


def about_table(table):
    rows = f"At most {table.rows} row{'s' if table.rows > 1 else ''}"
    if table.parent:
        rows += f" for each of {table.parents} {table.parent_item}s"
    pace = PACE.get(table.pace, f"Read from the array together with {table.pace}Table.")
    return f"{rows}. {pace}"


def about_parent_index(table):
    return f"The first index is the row of the {table.parent_item} in {table.parent.name}Table."


def about_kind_on_the_wire(column, convention, traps):
    """Values of the type enumeration are INTEGER in a response and unsigned in a notification."""
    carried = any(column in each.columns for each in traps.notifications)
    if column.type != "enumeration" or not carried:
        return ""
    unknown = " (unknown as 4294967295)" if any(value.number == -1 for value in convention.values) else ""
    return f"A notification carries it as an unsigned number{unknown}."


def about_forced_object(column, force, notification):
    """Explains which object the notification is about, if it is not the one in the row."""
    if force.rule == "index":
        return f"Nothing is sent for row {column.table.rows}, the last row of a full table."
    index = notification.state.index_column
    if index is None:
        return ""
    if index.table is column.table:
        return f"Note that the row number is taken as {index.name}: the notification is about the " \
               f"{column.table.item} with that API index."
    parent = column.table.parent_item
    return f"Note that the row number of the {parent} is taken as {index.name}: the notification is about the " \
           f"{column.table.item} in this row of the {parent} with that API index."


def about_forcing(column, traps):
    """Describes a ForceTrap column; empty for others."""
    force = next((each for each in traps.forces if each.column is column), None)
    if force is None:
        return ""
    notification = traps.notification(force.trap)
    sentences = [FORCING.format(notification.name), about_forced_object(column, force, notification), FORCED]
    return " ".join(filter(None, sentences))


def quoted(text):
    return f"'{text}'"


def advice_of_component(component):
    texts = [component.state.texts.get(key) for key in ("unhealthy", "down", "degraded")]
    texts += [level[2] for level in component.levels.values()]
    return f"{component.description}: " + " or ".join(quoted(text) for text in texts if text)


def about_notification(notification, traps):
    """Returns the paragraphs that follow the description."""
    if notification.state is None:
        return []
    paragraphs = []
    components = [each for each in traps.components if each.trap == notification.number]
    if components:
        paragraphs.append(["trapActionText while the component is not up:", *map(advice_of_component, components)])
    elif "unhealthy" in notification.state.texts:
        paragraphs.append(f"trapActionText while the object is not up: {quoted(notification.state.texts['unhealthy'])}")
    return paragraphs + [ONCE]
