"""Writes what a generator has made."""

import os


def c_string(text, encoding="utf-8"):
    """A C++ literal; bytes outside printable ASCII become three-digit octal escapes."""
    out = ""
    for byte in text.encode(encoding):
        char = chr(byte)
        out += "\\" + char if char in '"\\' else char if 32 <= byte < 127 else f"\\{byte:03o}"
    return f'"{out}"'


def write_if_changed(path, text):
    """Leaves an equal file untouched, so that nothing is compiled again without need."""
    try:
        with open(path, encoding="utf-8") as file:
            if file.read() == text:
                return
    except FileNotFoundError:
        pass
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)


def write_files(folder, files):
    """files: (name, text) pairs. Makes the folder when it is missing."""
    os.makedirs(folder, exist_ok=True)
    for name, text in files:
        write_if_changed(os.path.join(folder, name), text)
