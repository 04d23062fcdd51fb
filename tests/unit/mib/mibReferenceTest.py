"""Compares the MIB module with the delivered one: no name, number, type, access or enumeration may change accidentally.
Usage: mibReferenceTest.py MODULE-DIRECTORY [--accept]"""

import difflib
import os
import sys
import unittest

sys.dont_write_bytecode = True
HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, HERE)
import moduleFacts  # noqa: E402  (found through the line above)

REFERENCE = os.path.join(HERE, "reference")
HEAD = """\
# What managers depend on in the MIB module, one fact per line. scripts/accept-mib writes it; see mib/README.md.
"""
modules_folder = None


def found():
    facts = moduleFacts.read(os.path.join(modules_folder, moduleFacts.MODULE + ".txt"))
    return moduleFacts.reference(facts)


def accepted():
    with open(REFERENCE, encoding="utf-8") as file:
        return file.read().removeprefix(HEAD).splitlines()


def accept():
    with open(REFERENCE, "w", encoding="utf-8") as file:
        file.write(HEAD + "\n".join(found()) + "\n")


def difference(before, after):
    """Returns the removed (-) and added (+) lines."""
    return [line for line in difflib.unified_diff(before, after, lineterm="", n=0)
            if not line.startswith(("---", "+++", "@@"))]


class ReferenceTest(unittest.TestCase):
    def test_nothing_that_was_delivered_has_changed(self):
        changed = difference(accepted(), found())
        gone = [line for line in changed if line.startswith("-")]
        self.assertFalse(changed, "\n".join([
            "the MIB module is not the accepted one:", *changed,
            "Managers depend on every line that is gone: names and numbers that were delivered never change." if gone
            else "These are only new.",
            "When it is meant so, add a line 'revision' to data/mib/module.def, run scripts/accept-mib, and commit "
            "tests/unit/mib/reference with the change."]))


if __name__ == "__main__":
    modules_folder = sys.argv.pop(1)
    if sys.argv[1:] == ["--accept"]:
        accept()
    else:
        unittest.main()
