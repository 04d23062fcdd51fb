"""Finds the commands in the documents, and lists those that test_documents.py does not run.

In Markdown, indented blocks and fenced blocks marked `sh` contain commands; every other block is fenced and marked with
its contents. A code span is a command if it matches COMMAND and contains no placeholder. In a manual page of section 1
or 8, the displays of EXAMPLES are commands.
"""

import os
import re
from collections import namedtuple
from fnmatch import fnmatchcase

from . import machine

# Replacements for commands that take too long.
SHORTER = {
    "scripts/test": "scripts/test -R manual.lint",
    "scripts/build debug": "scripts/build debug mgmtSend",
    "scripts/bench": "scripts/bench --quick",
}

# Commands that another test runs: the command, the file of that test, and a string in it that proves it.
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

# Commands that no test runs, and why. The README and the manual pages must not contain any of them.
BY_HAND = {
    "scripts/test [!-]*": "runs tests of another preset, or some of the tests",
    "scripts/test -*": "runs some of the tests",
    "scripts/test-monitors": "needs packages that few machines have",
    "scripts/record-dashboard": "records for minutes; a person checks the picture",
    "scripts/coverage": "runs all tests again",
    "scripts/fuzz*": "needs a compiler that nothing else needs",
}

# text: on one line, without its comment. prints: the expected output according to that comment, or None.
Command = namedtuple("Command", "document line text prints")

COMMAND = re.compile(r"scripts/\w|(sandbox/sandbox|/usr/bin/python3|snmp(get|set|walk|bulkwalk|table|translate|trapd)"
                     r"|systemctl|journalctl|apt-get|cmake|ctest|smilint|arraySim|mgmtSend|apiClient"
                     r"|snmpSubagent-checkconf) ")
PLACEHOLDER = re.compile(r"\.\.\.|\b(COMMAND|FILE|WORD)\b")
COMMENT = re.compile(r"(?:^|\s+)#\s([^#]*)$")


def paths():
    """Returns all Markdown files and manual pages of the repository, the README first."""
    found = []
    for folder, folders, names in os.walk(machine.REPOSITORY):
        folders[:] = [name for name in folders if name != "build" and not name.startswith(".")]
        place = os.path.relpath(folder, machine.REPOSITORY)
        found += [os.path.normpath(os.path.join(place, name)) for name in names
                  if name.endswith(".md") or place == "docs/man"]
    return sorted(found, key=lambda path: (path != "README.md", path))


def blocks(path, text=None):
    """Returns the commands of a document: one list per block or code span with commands."""
    if text is None:
        text = machine.read_file(os.path.join(machine.REPOSITORY, path))
    find = blocks_of_markdown if path.endswith(".md") else blocks_of_page
    return [found for begin, lines in find(path, text.splitlines()) if (found := commands(path, begin, lines))]


def commands(path, begin, lines):
    """Returns the commands in the lines of a block. A backslash at the end continues a command in the next line."""
    found, unfinished = [], ""
    for number, line in enumerate(lines, begin):
        comment = COMMENT.search(line)
        line = (line[:comment.start()] if comment else line).strip()
        if line.endswith("\\"):
            unfinished += line[:-1].rstrip() + " "
        elif unfinished + line:
            remark = comment.group(1) if comment else ""
            prints = remark.removeprefix("prints ") if remark.startswith("prints ") else None
            found.append(Command(path, number, unfinished + line, prints))
            unfinished = ""
    if unfinished:
        raise AssertionError(f"{path}:{begin}: incomplete command at the end of the block: {unfinished}")
    return found


def blocks_of_markdown(path, lines):
    """Yields (number of the first line, lines) of each block."""
    fence, block = None, None  # the line that opens the fenced block, the indented block
    for number, line in enumerate(lines + [""], 1):
        if block and line and not line.startswith("    "):
            yield block
            block = None
        if line.startswith("```"):
            if fence and fence[1] == "```sh":
                yield fence[0] + 1, lines[fence[0]:number - 1]
            elif line == "```" and not fence:
                raise AssertionError(f"{path}:{number}: block without a type; expected ```sh, ```text, ...")
            fence = None if fence else (number, line)
        elif fence:
            continue
        elif block:
            block[1].append(line)
        elif line.startswith("    ") and (number == 1 or not lines[number - 2]):
            block = (number, [line])
        else:
            for span in re.findall(r"`([^`]+)`", line):
                if COMMAND.match(span) and not PLACEHOLDER.search(span):
                    yield number, [span]
    if block:
        yield block


def blocks_of_page(path, lines):
    """Yields the same for a manual page."""
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
    """Returns the first pattern that matches a command, or None."""
    return next((each for each in patterns if fnmatchcase(command.text, each)), None)


def is_omitted(command):
    """Returns whether test_documents.py omits the command."""
    return matching([row[0] for row in ELSEWHERE], command) or \
        (command.text not in SHORTER and matching(BY_HAND, command))
