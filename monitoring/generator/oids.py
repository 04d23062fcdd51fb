"""Object identifiers as monitors write them."""


def dotted(oid):
    return ".".join(map(str, oid))


def instance(column):
    """Of a scalar."""
    return dotted((*column.oid, 0))
