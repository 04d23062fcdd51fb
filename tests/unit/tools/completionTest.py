"""Checks the completions that bash, zsh and fish offer, with the real programs.

Usage: completionTest.py DIRECTORY PROGRAM...    the directory with the shells' scripts
"""

import os
import shutil
import subprocess
import sys
import tempfile

# An unfinished command line, and the completions of its last word.
ROWS = (
    ("apiClient TsDiskF", "TsDiskFolder", "TsDiskFolderStorageUsage"),
    ("apiClient TsController Modify IndicatorOn=", "IndicatorOn=True", "IndicatorOn=False"),
    ("apiClient TsDisk GetList --filter 'Status = D", "Status = Down", "Status = Degraded"),
    ("apiClient TsDisk GetList --columns Name,Stat", "Name,Status", "Name,StatusMessage"),
    ("apiClient --format ", "table", "csv", "json", "xml"),
    ("arraySim d", "dump"),
    ("arraySim serve --trace --preset ", "small", "typical", "full"),
    ("mgmtSend raw --so", "--socket"),
    ("mgmtSend --socket /s trap ctlr-comp-status 1 ", "fan", "power", "temperature", "voltage"),
    ("mgmtSend verbose o", "on", "off"),
    ("snmpSubagent-checkconf --al", "--allow-warnings"),
)

# Bash and zsh complete only at a terminal, so these scripts replace its functions and variables.
BASH = """
source "$1"; shift
COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1))
_snmpsubagent_complete
printf '%s\\n' "${COMPREPLY[@]}"
"""
ZSH = """
script=$1; shift
words=("$@") CURRENT=$# service=$1
compadd() { while [[ $1 != -- ]] { shift }; shift; (( ! $# )) || print -l -- "$@" }
complete() { source $script }
complete
"""
FISH = """
source $argv[1]
complete --do-complete $argv[2]
"""


def split(line):
    """Returns the words of zsh, and those of bash, which splits at "=" outside quotation marks."""
    before, _, last = line.rpartition(" '" if "'" in line else " ")
    words = before.split() + ["'" + last if "'" in line else last]
    return words, words[:-1] + words[-1].replace("=", " = ").split(" ") if "=" in last and "'" not in line else words


def offered(shell, scripts, line):
    zsh, bash = split(line)
    command = {"bash": ("-c", BASH, "bash", scripts + "/completion.bash", *bash),
               "zsh": ("-fc", ZSH, "zsh", scripts + "/completion.zsh", *zsh),
               "fish": ("-Nc", FISH, scripts + "/completion.fish", line)}[shell]
    done = subprocess.run((shell, *command), capture_output=True, text=True, check=False)
    # fish repeats an open quotation mark, and bash offers only what follows the "=".
    return [each.split("\t")[0].lstrip("'") for each in done.stdout.splitlines()] or [done.stderr]


def main(scripts, *programs):
    faults = []
    with tempfile.TemporaryDirectory() as directory:
        for program in programs:
            os.symlink(program, os.path.join(directory, os.path.basename(program)))
        os.environ.update(PATH=f"{directory}:{os.environ['PATH']}", HOME=directory, TERM="dumb")
        for shell in ("bash", "zsh", "fish"):
            if not shutil.which(shell):
                print(f"skipped '{shell} is missing'")
                continue
            for line, *expected in ROWS:
                if shell == "bash" and line.endswith("="):
                    expected = [each.rpartition("=")[2] for each in expected]
                if sorted(found := offered(shell, scripts, line)) != sorted(expected):
                    faults.append(f"{shell}: {line}: {found}")
    print("\n".join(faults) or "nothing found")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
