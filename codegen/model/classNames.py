"""What classes, operations and units are called: the one place where such names are put together."""

UNIT_FOLDER = "apiMgmt/apiStub/apiSdk/objects/tessera/src/"
METHOD_OBJECT_UNIT = "apiMethodObjects"


def object_class(name):
    return f"API{name}"


def unit(name):
    """The unit of an object, which is also the place that its errors name."""
    return f"api{name}"


def method_class(owner, command):
    return f"API{owner}{command}Method"


def association_class(owner, association):
    return f"API{owner}{association}Association"


def attribute_class(kind):
    return f"{kind}ApiAttribute"


def accessor(attribute):
    """The operation that gives the descriptor."""
    return f"{attribute}Attribute"


def table(name):
    return f"APIEnumsIDStrList::g{name}EnumIdStrList"


def privilege(name):
    return "USER_PRIVILEGE_" + "".join("_" + c if c.isupper() and i else c for i, c in enumerate(name)).upper()


def variable(name):
    """A class's or a method's name as that of a variable."""
    return name[0].lower() + name[1:]
