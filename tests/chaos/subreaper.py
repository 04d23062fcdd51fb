"""Starts daemons as a supervisor does, and reports the exit of every process that they leave behind. It is a separate
process because it becomes the parent of all its descendants.

It reads one line per daemon to start and writes one line per process that has exited: its id, its name, and its exit
status, which is negative for a signal."""

import ctypes
import os
import select
import sys

PR_SET_CHILD_SUBREAPER = 36
POLL_S = 0.1


def start(words):
    if os.fork() == 0:
        null = os.open("/dev/null", os.O_RDWR)
        for number in range(3):
            os.dup2(null, number)
        os.execv(words[0], words)


def name_of(pid):
    try:
        with open(f"/proc/{pid}/comm", encoding="utf-8", errors="replace") as file:
            return file.read().strip()
    except OSError:
        return "?"


def reap():
    """Reports all processes that have exited."""
    while True:
        try:
            ended = os.waitid(os.P_ALL, 0, os.WEXITED | os.WNOHANG | os.WNOWAIT)
        except ChildProcessError:
            return
        if ended is None:
            return
        name = name_of(ended.si_pid)
        _, status = os.waitpid(ended.si_pid, 0)
        print(ended.si_pid, name, os.waitstatus_to_exitcode(status), flush=True)


def main():
    if ctypes.CDLL(None, use_errno=True).prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0) != 0:
        sys.exit("prctl: " + os.strerror(ctypes.get_errno()))
    while True:
        readable, _, _ = select.select([sys.stdin], [], [], POLL_S)
        if readable:
            line = sys.stdin.readline()
            if not line:
                return
            start(line.split())
        reap()


if __name__ == "__main__":
    main()
