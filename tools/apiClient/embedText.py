"""Makes a C++ unit that holds a file as one text: embedText.py FILE VARIABLE UNIT."""

import sys

UNIT = """\
// Made from {file}.
#include <string_view>

extern const std::string_view {variable};
const std::string_view {variable} = R"text({text})text";
"""


def main():
    source, variable, unit = sys.argv[1:]
    with open(source, encoding="utf-8") as file:
        text = file.read()
    with open(unit, "w", encoding="utf-8") as file:
        file.write(UNIT.format(file=source.rpartition("/")[2], variable=variable, text=text))


if __name__ == "__main__":
    main()
