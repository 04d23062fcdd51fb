"""The array's API on the command line: lists, relations, changes, completion."""

import unittest

from harness import apiClient, array, machine, story

LISTED_ONE_BY_ONE = "TsDiskFolderStorageUsage"  # the one object without a list


class AskingTheArray(unittest.TestCase):
    """The daemon has no part in this: the array alone."""

    @classmethod
    def setUpClass(cls):
        cls.array = array.Array().start("small")
        cls.addClassCleanup(machine.end_processes_named, "arraySim")
        cls.addClassCleanup(cls.array.stop)

    def test_every_object_of_the_model_is_listed_with_what_it_holds(self):
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
            answer = apiClient.ask("Tessera", "Modify", f"InstanceId={array.SERIAL}", f"Location={text}")
            self.assertEqual((answer.status, answer.output), (0, "Done.\n"), answer)
            self.assertEqual(self.array.get("Tessera", 1, "Location"), text)
            self.assertEqual(apiClient.objects("Tessera", "Get", f"InstanceId={array.SERIAL}").get("Location"), text)

    def test_bash_completes_a_whole_command(self):
        for words, expected in ((["TsDiskF"], ["TsDiskFolder", "TsDiskFolderStorageUsage"]),
                                (["TsDisk", "GetL"], ["GetList"]),
                                (["TsController", "Modify", "Indic"], ["IndicatorOn="]),
                                # Bash takes words apart at "=" and replaces what stands behind it.
                                (["TsController", "Modify", "IndicatorOn", "=", ""], ["True", "False"]),
                                (["TsController", "Modify", "InstanceId", "=", "1", "IndicatorOn", "=", "T"], ["True"]),
                                (["TsDisk", "GetList", "--filter", "'Status = D"], ["Status = Down", "Status = Degraded"]),
                                (["TsDisk", "GetList", "--columns", "Name,Stat"], ["Name,Status", "Name,StatusMessage"]),
                                (["TsDisk", "GetList", "--key-file", "/etc/wirelink.k"], ["/etc/wirelink.key"])):
            with self.subTest(words=words):
                self.assertEqual(apiClient.complete(*words), expected)


if __name__ == "__main__":
    story.tell()
