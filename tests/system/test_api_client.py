"""The command-line client of the API: lists, changes, repeated calls."""

import unittest

from harness import apiClient, array, machine, systemTest

LISTED_ONE_BY_ONE = "TsDiskFolderStorageUsage"  # the one object without a list


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
                    got = [apiClient.objects(kind, "Get", f"InstanceId={each['InstanceId']}") for each in expected]
                else:
                    got = apiClient.objects(kind, "GetList")
                self.assertEqual([each["InstanceId"] for each in got], [each["InstanceId"] for each in expected])
                for attribute in ("Name", "Status", "StatusMessage"):
                    self.assertEqual([each.get(attribute) for each in got],
                                     [each.get(attribute) for each in expected])

    def test_a_change_reaches_the_array(self):
        for text in ("rack 4", "<rack> & \"four\" - 5", ""):
            response = apiClient.call("Tessera", "Modify", f"InstanceId={array.SERIAL}", f"Location={text}")
            self.assertEqual((response.status, response.output), (0, "Done.\n"), response)
            self.assertEqual(self.array.get("Tessera", 1, "Location"), text)
            self.assertEqual(apiClient.objects("Tessera", "Get", f"InstanceId={array.SERIAL}").get("Location"), text)

    def test_a_watch_shows_a_change(self):
        words = ("Tessera", "Get", f"InstanceId={array.SERIAL}", "--columns", "Location", "--format", "csv")
        with apiClient.watched(*words) as lines:
            for text in ("rack 5", "rack 6"):
                self.array.set("Tessera", 1, "Location", text)
                self.assertTrue(any(line == text + "\n" for line in lines))


if __name__ == "__main__":
    systemTest.main()
