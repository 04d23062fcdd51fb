"""The kinds of attributes: which rules each kind accepts, and its values in C++ and in prose."""

from dataclasses import dataclass

from codegen.model import classNames as names

BOUNDS = ("min", "max")
LENGTHS = ("minLength", "maxLength")

# Filter operators, as the library's client spells them.
EQUAL = ("==",)
ORDER = ("==", "<", "<=", ">", ">=")
PARTS = ("Contains", "IsPartOf")

TEXT = "const std::string&"
TEXTS = "const std::vector<std::string>&"


@dataclass(frozen=True)
class Kind:
    words: str  # for a comment
    takes: str  # the setter's parameter
    gives: str  # the getter's result
    parameter: str = "value"
    rules: tuple = ()
    operators: tuple = ()  # of filters


KINDS = {
    "BOOLEAN": Kind("a Boolean", "bool", "bool", operators=EQUAL),
    "INT": Kind("an integer", "int64_t", "int64_t", "number", BOUNDS, operators=ORDER),
    "DOUBLE": Kind("a floating-point number", "double", "double", "number", BOUNDS, operators=ORDER),
    "INTARRAY": Kind("integers", "const std::vector<int64_t>&", "std::vector<int64_t>", "numbers", BOUNDS),
    "STRING": Kind("a string", TEXT, "std::string", "text", LENGTHS + ("invalid",), operators=ORDER + PARTS),
    "NAME": Kind("a name", TEXT, "std::string", "name", LENGTHS, operators=ORDER + PARTS),
    "STRINGARRAY": Kind("strings", TEXTS, "std::vector<std::string>", "texts"),
    "ENUM": Kind("a string", TEXT, "std::string", "description", ("table",), operators=EQUAL),
    "ENUMMASK": Kind("strings", TEXTS, "std::vector<std::string>", "descriptions", ("table",)),
    "INSTANCEID": Kind("an instance ID", TEXT, "std::string", "id", operators=EQUAL),
    "OBJECT": Kind("a reference, null for none", "const APIObjectInstance*", "std::unique_ptr<APIObjectInstance>"),
    "OBJECTARRAY": Kind("references", "const std::vector<const APIObjectInstance*>&",
                        "std::vector<std::unique_ptr<APIObjectInstance>>", "values"),
    "METHODOBJECT": Kind("a structured argument, null for none", "const {object}*", "{object}", "value",
                         ("object",)),
    "METHODOBJECTARRAY": Kind("structured arguments", "const std::vector<const BASEApiMethodObject*>&",
                              "std::vector<{object}>", "values", ("object",)),
    "DATETIME": Kind("a date and time", "const DATETIMEValue&", "DATETIMEValue", "time", operators=ORDER),
    "SIZE": Kind("a storage size", "const SIZEValue&", "SIZEValue", "size", operators=ORDER),
    "TEMPERATURE": Kind("a temperature", "const TEMPERATUREValue&", "TEMPERATUREValue", "temperature", operators=ORDER),
    "VERSION": Kind("a version", "const VERSIONValue&", "VERSIONValue", "version", operators=ORDER),
    "IPV4ADDRESS": Kind("an IPv4 address", TEXT, "std::string", "address", operators=EQUAL + PARTS),
    "IPV6ADDRESS": Kind("an IPv6 address", TEXT, "std::string", "address", operators=EQUAL + PARTS),
    # Not valid in the data: a filter is an argument without a kind, and its accessors are in the base class.
    "GETLISTFILTER": Kind("a filter", "const FILTERList*", "FILTERList*", "filter"),
}

ATTRIBUTE_KINDS = tuple(kind for kind in KINDS if kind != "GETLISTFILTER")

_HEADERS = {
    "addressApiAttributes.h": ("IPV4ADDRESS", "IPV6ADDRESS"),
    "numberApiAttributes.h": ("BOOLEAN", "INT", "DOUBLE", "INTARRAY"),
    "objectApiAttributes.h": ("OBJECT", "OBJECTARRAY", "METHODOBJECT", "METHODOBJECTARRAY", "GETLISTFILTER"),
    "textApiAttributes.h": ("STRING", "NAME", "STRINGARRAY", "ENUM", "ENUMMASK", "INSTANCEID"),
    "valueApiAttributes.h": ("DATETIME", "SIZE", "TEMPERATURE", "VERSION"),
}
HEADER_OF_KIND = {kind: header for header, kinds in _HEADERS.items() for kind in kinds}


def takes(attribute):
    """Returns type and name of the setter's parameter."""
    kind = KINDS[attribute.kind]
    if attribute.kind == "ENUM" and "table" in attribute.rules:
        return "int id"
    taken = kind.takes.format(object=names.object_class(attribute.rules.get("object", "")))
    return f"{taken} {kind.parameter}"


def parameter(attribute):
    return takes(attribute).rpartition(" ")[2]


def gives(attribute):
    return KINDS[attribute.kind].gives.format(object=names.object_class(attribute.rules.get("object", "")))


def _limits(low, high, least, span, most):
    if low is not None and high is not None:
        return span.format(low, high)
    return least.format(low) if low is not None else most.format(high) if high is not None else ""


def _text_limits(rules):
    low = rules.get("minLength") or None
    text = _limits(low, rules.get("maxLength"), " of at least {} byte(s)", " of {} to {} bytes", " of at most {} bytes")
    text = text.replace("1 byte(s)", "1 byte").replace("byte(s)", "bytes")
    return text + (f" without {rules['invalid']}" if "invalid" in rules else "")


def in_words(attribute):
    """Describes the value, for a comment on its accessors."""
    kind, rules = KINDS[attribute.kind], attribute.rules
    if "table" in rules and attribute.kind == "ENUM":
        return f"the ID of a row of g{rules['table']}EnumIdStrList"
    if "table" in rules:
        return f"descriptions of rows of g{rules['table']}EnumIdStrList"
    if kind.rules == BOUNDS:
        return kind.words + _limits(rules.get("min"), rules.get("max"), " from {}", " from {} to {}", " up to {}")
    if LENGTHS[0] in kind.rules:
        return kind.words + _text_limits(rules)
    return kind.words
