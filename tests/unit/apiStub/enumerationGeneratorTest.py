"""The generator of the enumerations: a small input with what is made of it, wrong lines with their message."""

import os
import sys
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

import generatorCase  # noqa: E402
from apiMgmt.apiStub.apiSdk.objects.tessera.enumerationGenerator import __main__ as program  # noqa: E402

STATES = """\
# States.

enumeration Status rows=2
  1  Up
  4  NotUp  "not  \u00fcp \\"1\\" "  # a comment
enumeration Side rows=1
  -1  A
"""

ZONES = """\
enumeration Zone rows=2
   0  Etc__GMT  "Etc/GMT"
   1  B
"""

HEADER = """\
    // states.def
    static const ENUMRow gStatusEnumIdStrList[2];
    static const ENUMRow gSideEnumIdStrList[1];
    // zones.def
    static const ENUMRow gZoneEnumIdStrList[2];

    /** All of them, in the order of the data files. */
    static const ENUMNamedTable gAllEnumTables[3];
"""

SOURCE = """\
constinit const ENUMRow APIEnumsIDStrList::gStatusEnumIdStrList[2] = {
    {1, "Up", "Up"},
    {4, "NotUp", "not  \\374p \\"1\\" "},
};

constinit const ENUMRow APIEnumsIDStrList::gSideEnumIdStrList[1] = {
    {-1, "A", "A"},
};

constinit const ENUMRow APIEnumsIDStrList::gZoneEnumIdStrList[2] = {
    {0, "Etc__GMT", "Etc/GMT"},
    {1, "B", "B"},
};

constinit const ENUMNamedTable APIEnumsIDStrList::gAllEnumTables[3] = {
    {"Status", gStatusEnumIdStrList},
    {"Side", gSideEnumIdStrList},
    {"Zone", gZoneEnumIdStrList},
};
"""

# A line of ZONES, what stands there instead, the line and text of the message.
WRONG = (
    (1, "table Zone rows=2", 1, "expected: enumeration NAME rows=N"),
    (1, "enumeration Zone", 1, "expected: enumeration NAME rows=N"),
    (1, "enumeration Zone rows=0", 1, "expected: enumeration NAME rows=N"),
    (1, "enumeration Zone rows=3", 1, "'Zone' has 2 rows, not 3"),
    (1, "enumeration zone rows=2", 1, "'zone' is no name of an enumeration"),
    (1, "enumeration Side rows=2", 1, "'Side' stands already at states.def:6"),
    (1, "", 2, "a row stands below no enumeration line"),
    (2, "", 1, "'Zone' has 1 rows, not 2"),
    (3, "  1", 3, 'expected: VALUE IDENTIFIER ["TEXT FOR PEOPLE"]'),
    (3, "  1 Not quite up", 3, 'expected: VALUE IDENTIFIER ["TEXT FOR PEOPLE"]'),
    (3, "  one B", 3, "'one' is no number of 32 bits"),
    (3, "  2147483648 B", 3, "'2147483648' is no number of 32 bits"),
    (3, "  0 B", 3, "the id 0 does not come after 0"),
    (3, "  1 B-2", 3, "'B-2' is no identifier"),
    (3, "  1 etc__gmt", 3, "'etc__gmt' stands already at line 2"),
    (3, '  1 B "B"', 3, "the text for people is the identifier itself: leave it out"),
    (3, '  1 B ""', 3, "the text for people must be printable and not blank"),
    (3, '  1 B "a\tb"', 3, "the text for people must be printable and not blank"),
    (3, '  1 B "\u20ac"', 3, "'\u20ac' holds a letter outside ISO-8859-1"),
    (3, '  1 B "open', 3, "cannot split the line into words: No closing quotation"),
)


class EnumerationGenerator(generatorCase.GeneratorCase):
    def run_on(self, **files):
        for name, text in files.items():
            self.write(f"{name}.def", text)
        return self.run_program(program, "--data", self.folder, "--out", self.path("out"))

    def read_ascii(self, name):
        return self.read(name, encoding="ascii")

    def test_makes_the_tables(self):
        self.assertEqual(self.run_on(zones=ZONES, states=STATES), (0, ""))
        self.assertIn(HEADER, self.read_ascii("apiEnumsIDStrList.h"))
        self.assertTrue(self.read_ascii("apiEnumsIDStrList.cpp").endswith(SOURCE), self.read_ascii("apiEnumsIDStrList.cpp"))

    def test_leaves_equal_files_untouched(self):
        self.run_on(zones=ZONES)
        for name in ("apiEnumsIDStrList.h", "apiEnumsIDStrList.cpp"):
            os.utime(self.path("out/" + name), (1, 1))
        self.run_on(zones=ZONES.replace("  B", '  B  "b"'))
        self.assertEqual(os.stat(self.path("out/apiEnumsIDStrList.h")).st_mtime, 1)
        self.assertNotEqual(os.stat(self.path("out/apiEnumsIDStrList.cpp")).st_mtime, 1)

    def test_tells_where_the_data_are_wrong(self):
        for number, instead, place, message in WRONG:
            lines = ZONES.split("\n")
            lines[number - 1] = instead
            with self.subTest(line=instead or f"without line {number}"):
                result = self.run_on(states=STATES, zones="\n".join(lines))
                self.assertEqual(result, (1, f"zones.def:{place}: {message}\n"))
                self.assertFalse(os.path.exists(self.path("out")))

    def test_an_empty_folder_is_a_mistake(self):
        self.assertEqual(self.run_on(), (1, f"{self.folder}: there are no data files\n"))


if __name__ == "__main__":
    unittest.main()
