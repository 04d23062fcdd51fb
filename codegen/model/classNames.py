"""The names of generated classes, functions and units."""

UNIT_FOLDER = "apiMgmt/apiStub/apiSdk/objects/tessera/src/"
METHOD_OBJECT_UNIT = "apiMethodObjects"


def object_class(name):
    return f"API{name}"


def unit(name):
    """Returns the unit of an object, which its errors name as their source."""
    return f"api{name}"


def method_class(owner, command):
    return f"API{owner}{command}Method"


def association_class(owner, association):
    return f"API{owner}{association}Association"


def attribute_class(kind):
    return f"{kind}ApiAttribute"


def accessor(attribute):
    """Returns the name of the function that returns the descriptor."""
    return f"{attribute}Attribute"


def table(name):
    return f"APIEnumsIDStrList::g{name}EnumIdStrList"


def privilege(name):
    return "USER_PRIVILEGE_" + "".join("_" + c if c.isupper() and i else c for i, c in enumerate(name)).upper()


def variable(name):
    """Converts the name of a class or method to that of a variable."""
    return name[0].lower() + name[1:]
