"""The commands that the documents show, block by block, and where those run that test_documents.py leaves out.

In Markdown an indented block and a fenced one marked `sh` are commands; every other block is fenced and marked with
what it holds. A code span is a command when it begins as COMMAND says and no word in it stands for another. In a manual
page of section 1 or 8 the displays of EXAMPLES are commands.
"""

import os
import re
from collections import namedtuple
from fnmatch import fnmatchcase

from . import machine

# In place of a command that takes too long as it stands: a shorter one that does the same.
SHORTER = {
    "scripts/test": "scripts/test -R manual.lint",
    "scripts/build debug": "scripts/build debug mgmtSend",
    "scripts/bench": "scripts/bench --quick",
}

# Commands that another test runs, that test, and the text in it that does so.
ELSEWHERE = (
    ("scripts/demo", "tests/system/CMakeLists.txt", "scripts/lib/demo.py"),
    ("scripts/chaos*", "tests/system/test_chaos.py", "Run(MINUTES"),
    ("scripts/record-array", "tests/system/test_recording.py", "RECORDER"),
    ("scripts/record-demo", "tests/system/CMakeLists.txt", "textToSvg.py"),
    ("sandbox/sandbox -- /usr/bin/python3 tests/system/test_set.py", "tests/system/CMakeLists.txt", "test_set.py"),
    ("scripts/lint", "tests/unit/tools/CMakeLists.txt", "scripts/lint"),
    ("scripts/check-freebsd", "tests/unit/package/CMakeLists.txt", "scripts/check-freebsd"),
    ("scripts/freebsd-plist *", "tests/unit/package/CMakeLists.txt", "scripts/freebsd-plist"),
    ("smilint -s -l 9", "mib/CMakeLists.txt", "-s -l 9"),
    ("snmptrapd -On -Oe", "tests/system/harness/receiver.py", '"-On", "-Oe"'),
)

# Commands that no test runs, and why. None of them may stand in the README or in a manual page.
BY_HAND = {
    "scripts/test [!-]*": "the tests of another preset, or some of the tests",
    "scripts/test -*": "some of the tests",
    "scripts/test-monitors": "packages that few machines have",
    "scripts/record-dashboard": "minutes of recording, for a picture that somebody looks at",
    "scripts/coverage": "all tests once more",
    "scripts/fuzz*": "a compiler that nothing else needs",
}

# text: on one line, without the comment behind it. prints: what that comment says it prints, or None.
Command = namedtuple("Command", "document line text prints")

COMMAND = re.compile(r"scripts/\w|(sandbox/sandbox|/usr/bin/python3|snmp(get|set|walk|bulkwalk|table|translate|trapd)"
                     r"|systemctl|journalctl|apt-get|cmake|ctest|smilint|arraySim|mgmtSend|apiClient"
                     r"|snmpSubagent-checkconf) ")
STANDS_FOR_ANOTHER = re.compile(r"\.\.\.|\b(COMMAND|FILE|WORD)\b")
COMMENT = re.compile(r"(?:^|\s+)#\s([^#]*)$")


def paths():
    """All Markdown files and manual pages of the repository, the README first."""
    found = []
    for folder, folders, names in os.walk(machine.REPOSITORY):
        folders[:] = [name for name in folders if name != "build" and not name.startswith(".")]
        place = os.path.relpath(folder, machine.REPOSITORY)
        found += [os.path.normpath(os.path.join(place, name)) for name in names
                  if name.endswith(".md") or place == "docs/man"]
    return sorted(found, key=lambda path: (path != "README.md", path))


def blocks(path, text=None):
    """The commands of a document: a list for each block and for each code span that holds some."""
    if text is None:
        text = machine.read_file(os.path.join(machine.REPOSITORY, path))
    find = blocks_of_markdown if path.endswith(".md") else blocks_of_page
    return [found for begin, lines in find(path, text.splitlines()) if (found := commands(path, begin, lines))]


def commands(path, begin, lines):
    """The commands in the lines of a block. One that ends with a backslash goes on in the next line."""
    found, held = [], ""
    for number, line in enumerate(lines, begin):
        comment = COMMENT.search(line)
        line = (line[:comment.start()] if comment else line).strip()
        if line.endswith("\\"):
            held += line[:-1].rstrip() + " "
        elif held + line:
            said = comment.group(1) if comment else ""
            prints = said.removeprefix("prints ") if said.startswith("prints ") else None
            found.append(Command(path, number, held + line, prints))
            held = ""
    if held:
        raise AssertionError(f"{path}:{begin}: this block ends within a command: {held}")
    return found


def blocks_of_markdown(path, lines):
    """(number of the first line, lines) of each."""
    fence, block = None, None  # the line that opens the fenced block, the indented block
    for number, line in enumerate(lines + [""], 1):
        if block and line and not line.startswith("    "):
            yield block
            block = None
        if line.startswith("```"):
            if fence and fence[1] == "```sh":
                yield fence[0] + 1, lines[fence[0]:number - 1]
            elif line == "```" and not fence:
                raise AssertionError(f"{path}:{number}: this block does not say what it holds: ```sh, ```text, ...")
            fence = None if fence else (number, line)
        elif fence:
            continue
        elif block:
            block[1].append(line)
        elif line.startswith("    ") and (number == 1 or not lines[number - 2]):
            block = (number, [line])
        else:
            for span in re.findall(r"`([^`]+)`", line):
                if COMMAND.match(span) and not STANDS_FOR_ANOTHER.search(span):
                    yield number, [span]
    if block:
        yield block


def blocks_of_page(path, lines):
    """The same of a manual page."""
    section, display = "", None
    for number, line in enumerate(lines if path[-1] in "18" else [], 1):
        line = line.replace(r"\e", "\\")
        if line.startswith(".Sh "):
            section = line[4:]
        elif section != "EXAMPLES":
            continue
        elif line.startswith(".Dl "):
            yield number, [line[4:]]
        elif line.startswith(".Bd "):
            display = (number + 1, [])
        elif line == ".Ed":
            yield display
            display = None
        elif display:
            display[1].append(line)


def matching(patterns, command):
    """The first of some patterns that a command is like, or None."""
    return next((each for each in patterns if fnmatchcase(command.text, each)), None)


def left_out(command):
    """Whether test_documents.py does not run it."""
    return matching([row[0] for row in ELSEWHERE], command) or \
        (command.text not in SHORTER and matching(BY_HAND, command))
