"""Checks the manual pages against the programs' help texts, and with mandoc and man.

Usage: manPagesTest.py PAGE PROGRAM        the page describes exactly what --help describes
       manPagesTest.py --lint PAGE...      mandoc and man report nothing, and all references exist
"""

import os
import re
import subprocess
import sys

# Pages of other packages that ours refer to.
OTHERS = {("snmpd", "8"), ("snmpd.conf", "5"), ("systemd", "1"), ("syslog", "3")}
# mandoc searches for references in a database of installed pages. Ours are not in it, so this test checks them.
OF_THE_DATABASE = re.compile(r"referenced manual not found|outdated mandoc\.db|mandoc\.db")


def run(*words):
    done = subprocess.run(words, stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False)
    return done.returncode, done.stdout, done.stderr


def read(path):
    with open(path, encoding="utf-8") as file:
        return file.read()


def help_of(*words):
    status, output, errors = run(*words, "--help")
    if status != 0:
        raise SystemExit(f"{' '.join(words)} --help: status {status}: {errors}")
    return output


def section(text, heading):
    """Returns the indented lines below a heading of a help text."""
    found = re.search(rf"^{heading}[^\n]*\n((?:[ \t]+[^\n]*\n|\n)*)", text, re.MULTILINE)
    return found.group(1) if found else ""


def subcommands(text):
    return re.findall(r"^  (\S+) ", section(text, "Subcommands:"), re.MULTILINE)


def told_by_help(program):
    """Returns long options, subcommands and exit statuses."""
    top = help_of(program)
    commands = subcommands(top)
    options = set()
    for text in [top] + [help_of(program, command) for command in commands]:
        for line in re.findall(r"^\s+(-\S.*)", text, re.MULTILINE):
            options.update(re.findall(r"(?:^|[ ,])--([a-z][a-z-]*)", line.split("  ")[0]))
    return options, set(commands), set(re.findall(r"^  (\d+)  ", section(top, "Exit status:"), re.MULTILINE))


def told_by_page(text):
    body = re.split(r"^\.Sh (EXAMPLES|SEE ALSO)", text, flags=re.MULTILINE)[0]
    statuses = re.search(r"^\.Sh EXIT STATUS\n(.*?)^\.Sh ", text, re.MULTILINE | re.DOTALL)
    names = set(re.findall(r"\bCm ([a-z][a-z-]*)", body)) | set(re.findall(r"^\.Ss (\S+)$", body, re.MULTILINE))
    return (set(re.findall(r"Fl -([a-z][a-z-]*)", body)), names,
            set(re.findall(r"^\.It (\d+)$", statuses.group(1) if statuses else "", re.MULTILINE)))


def compare(page, program):
    faults = []
    helped, shown = told_by_help(program), told_by_page(read(page))
    if not helped[0] or not helped[2]:
        faults.append(f"the help text of {program} was not understood: {helped}")
    for kind, of_help, of_page in zip(("options", "subcommands", "exit statuses"), helped, shown):
        if of_help - of_page:
            faults.append(f"{kind} missing in {page}: {sorted(of_help - of_page)}")
        if kind != "subcommands" and of_page - of_help:  # values of options are marked like subcommands
            faults.append(f"{kind} that {program} does not have in {page}: {sorted(of_page - of_help)}")
    return faults


def lint(pages):
    ours = {tuple(os.path.basename(page).rsplit(".", 1)) for page in pages}
    faults = []
    for page in pages:
        for words in (("mandoc", "-T", "lint", page), ("man", "--warnings", "-E", "UTF-8", "-l", page)):
            _, output, errors = run(*words)
            messages = errors + (output if words[0] == "mandoc" else "")
            faults += [f"{words[0]}: {line}" for line in messages.splitlines() if not OF_THE_DATABASE.search(line)]
        for reference in re.findall(r"^\.Xr (\S+) (\d)", read(page), re.MULTILINE):
            if reference not in ours | OTHERS:
                faults.append(f"{page}: refers to {'.'.join(reference)}, which does not exist")
    return faults


def main(arguments):
    faults = lint(arguments[1:]) if arguments[0] == "--lint" else compare(*arguments)
    print("\n".join(faults) or "nothing found")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
