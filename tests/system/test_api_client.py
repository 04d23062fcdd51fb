"""The command-line client of the API: lists, changes, repeated calls."""

import contextlib
import json
import os
import subprocess
import unittest

from harness import array, machine, systemTest

PROGRAM = os.path.join(machine.BUILD, "tools", "apiClient", "apiClient")
LISTED_ONE_BY_ONE = "TsDiskFolderStorageUsage"  # the one object without a list


def objects(*words):
    """Returns the response to a call as parsed JSON."""
    return json.loads(machine.run(PROGRAM, *words, "--format", "json"))


@contextlib.contextmanager
def watched(*words):
    """Repeats a call every second until the end of the block. Yields the stream of its output."""
    with subprocess.Popen([PROGRAM, *words, "--watch", "1"], stdout=subprocess.PIPE, text=True) as process:
        try:
            yield process.stdout
        finally:
            process.kill()


class ApiClient(unittest.TestCase):
    """Needs the array but no daemon."""

    @classmethod
    def setUpClass(cls):
        cls.array = array.Array().start("small")
        cls.addClassCleanup(machine.kill_processes_named, "arraySim")
        cls.addClassCleanup(cls.array.stop)

    def test_every_object_of_the_model_is_listed_with_its_values(self):
        for kind, expected in self.array.dump().items():
            with self.subTest(kind=kind):
                if kind == LISTED_ONE_BY_ONE:
                    got = [objects(kind, "Get", f"InstanceId={each['InstanceId']}") for each in expected]
                else:
                    got = objects(kind, "GetList")
                self.assertEqual([each["InstanceId"] for each in got], [each["InstanceId"] for each in expected])
                for attribute in ("Name", "Status", "StatusMessage"):
                    self.assertEqual([each.get(attribute) for each in got],
                                     [each.get(attribute) for each in expected])

    def test_a_change_reaches_the_array(self):
        for text in ("rack 4", "<rack> & \"four\" - 5", ""):
            said = machine.run(PROGRAM, "Tessera", "Modify", f"InstanceId={array.SERIAL}", f"Location={text}")
            self.assertEqual(said, "Done.\n")
            self.assertEqual(self.array.get("Tessera", 1, "Location"), text)
            self.assertEqual(objects("Tessera", "Get", f"InstanceId={array.SERIAL}").get("Location"), text)

    def test_a_watch_shows_a_change(self):
        words = ("Tessera", "Get", f"InstanceId={array.SERIAL}", "--columns", "Location", "--format", "csv")
        with watched(*words) as lines:
            for text in ("rack 5", "rack 6"):
                self.array.set("Tessera", 1, "Location", text)
                self.assertTrue(any(line == text + "\n" for line in lines))


if __name__ == "__main__":
    systemTest.main()
