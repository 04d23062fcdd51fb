"""Common parts of generated files, and functions that write them."""

import os


def notice(sources, sign="//"):
    """Returns the first line of a generated file. sources: files of data/, as Data.shown names them."""
    return f"{sign} Generated from {sources} by codegen. Do not edit.\n"


def markdown_notice(sources):
    return notice(sources, "<!--").rstrip("\n") + " -->\n"


def c_string(text, encoding="utf-8"):
    """Returns a C++ literal; bytes outside printable ASCII become three-digit octal escapes."""
    out = ""
    for byte in text.encode(encoding):
        char = chr(byte)
        out += "\\" + char if char in '"\\' else char if 32 <= byte < 127 else f"\\{byte:03o}"
    return f'"{out}"'


def dotted(oid):
    return ".".join(map(str, oid))


def instance(column):
    """Returns the OID of a scalar's only instance."""
    return dotted((*column.oid, 0))


def write_if_changed(path, text):
    """Leaves an identical file untouched, so that nothing is recompiled needlessly."""
    try:
        with open(path, encoding="utf-8") as file:
            if file.read() == text:
                return
    except FileNotFoundError:
        pass
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)


def write_files(folder, files):
    """files: (name, text) pairs. Creates missing directories."""
    for name, text in files:
        path = os.path.join(folder, name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        write_if_changed(path, text)
