"""The array's API on the command line: lists, filters, relations, changes, refusals, every format."""

import csv
import io
import unittest
import xml.etree.ElementTree

from harness import apiClient, array, machine, story

WRONG_KEY = "/tmp/wrong.key"
OPEN_KEY = "/tmp/open.key"

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

    def test_one_object_is_the_one_of_the_list(self):
        for disk in apiClient.objects("TsDisk", "GetList"):
            self.assertEqual(apiClient.objects("TsDisk", "Get", f"InstanceId={disk['InstanceId']}"), disk)

    def test_a_filter_lets_pass_what_it_says(self):
        self.array.fail("TsDisk", self.array.first("TsDisk"))
        disks = apiClient.objects("TsDisk", "GetList")
        middle = sorted(each["Index"] for each in disks)[len(disks) // 2]
        for conditions, passes in (
                (["Status = Down"], lambda disk: disk["Status"] == "Down"),
                ([f"Index >= {middle}"], lambda disk: disk["Index"] >= middle),
                ([f"Index < {middle}", "Status = Up"], lambda disk: disk["Index"] < middle and disk["Status"] == "Up"),
                ([f"Index = {middle}", "Status = Down", "--any"],
                 lambda disk: disk["Index"] == middle or disk["Status"] == "Down"),
                (["Name iqs 01-"], lambda disk: "01-" in disk["Name"]),
                ([f"Name = {disks[3]['Name']}"], lambda disk: disk["Name"] == disks[3]["Name"]),
                (["Size > 1 PB"], lambda disk: False)):
            with self.subTest(conditions=conditions):
                options = [word for each in conditions
                           for word in ([each] if each.startswith("--") else ["--filter", each])]
                expected = [disk for disk in disks if passes(disk)]
                self.assertEqual(apiClient.objects("TsDisk", "GetList", *options), expected)
        self.array.recover("TsDisk", self.array.first("TsDisk"))

    def test_a_relation_leads_to_the_objects_that_belong_there(self):
        controller, other = apiClient.objects("TsController", "GetList")[:2]
        fans = [each for each in apiClient.objects("TsControllerFanSensor", "GetList")
                if each["ControllerIndex"] == controller["Index"]]
        got = apiClient.objects("TsController", "FanSensorList", f"InstanceId={controller['InstanceId']}")
        self.assertEqual(got, fans)
        self.assertTrue(fans)
        back = apiClient.objects("TsControllerFanSensor", "Controller", f"InstanceId={fans[0]['InstanceId']}")
        self.assertEqual(back["InstanceId"], controller["InstanceId"])
        self.assertNotEqual(back["InstanceId"], other["InstanceId"])

    def test_a_change_reaches_the_array(self):
        for text in ("rack 4", "<rack> & \"four\" - 5", ""):
            answer = apiClient.ask("Tessera", "Modify", f"InstanceId={array.SERIAL}", f"Location={text}")
            self.assertEqual((answer.status, answer.output), (0, "Done.\n"), answer)
            self.assertEqual(self.array.get("Tessera", 1, "Location"), text)
            self.assertEqual(apiClient.objects("Tessera", "Get", f"InstanceId={array.SERIAL}").get("Location"), text)

    def test_a_refusal_has_its_state_and_its_status(self):
        machine.write_file(WRONG_KEY, "another\n", 0o600)
        for words, state in (
                (["TsDisk", "Get", "InstanceId=64702.99999"], "ObjectNotAvailable"),
                (["TsDisk", "Get", "--no-check"], "InvalidValue"),
                (["TsDisk", "Frob", "--no-check"], "MethodNotAvailable"),
                (["TsDisk", "GetList", "--key-file", WRONG_KEY], "IllegalSessionKey")):
            with self.subTest(words=words):
                answer = apiClient.ask(*words)
                self.assertEqual((answer.status, answer.output), (3, ""), answer)
                self.assertIn(f"({state}, ", answer.errors)

    def test_mistakes_end_before_the_array_is_asked(self):
        machine.write_file(OPEN_KEY, "key\n", 0o644)
        before = self.array.exchanges()
        for words in (["TsDisk", "Get"], ["TsDisk", "GetList", "--filter", "Status = Upp"],
                      ["Tessera", "Modify", f"InstanceId={array.SERIAL}", "Name=<>"],
                      ["TsDisk", "GetList", "--key-file", OPEN_KEY]):
            with self.subTest(words=words):
                answer = apiClient.ask(*words)
                self.assertEqual((answer.status, answer.output), (2, ""), answer)
        self.assertEqual(self.array.exchanges(), before)

    def test_an_array_that_misbehaves_is_reported_as_one(self):
        for fault, status in (("refuse", 1), ("tear", 1), ("garbage", 1), ("wrong-root", 1), ("unbalanced", 3),
                              ("no-return", 3), ("error 11 nothing for you", 3)):
            with self.subTest(fault=fault):
                self.array.fault(*fault.split(" ", 2))
                answer = apiClient.ask("TsDisk", "GetList", "--timeout", 10)
                self.array.clear_faults()
                self.assertEqual((answer.status, answer.output), (status, ""), answer)
                self.assertTrue(answer.errors.startswith("apiClient: "), answer)

    def test_all_formats_tell_the_same(self):
        columns = ["Name", "Status", "Index"]
        expected = [[str(disk[column]) for column in columns] for disk in apiClient.objects("TsDisk", "GetList")]
        words = ["TsDisk", "GetList", "--columns", ",".join(columns), "--format"]
        rows = list(csv.reader(io.StringIO(apiClient.ask(*words, "csv").output)))
        self.assertEqual((rows[0], rows[1:]), (columns, expected))
        lines = apiClient.ask(*words, "table").output.splitlines()
        self.assertEqual([line.split() for line in lines], [columns] + expected)
        root = xml.etree.ElementTree.fromstring(apiClient.ask(*words, "xml").output)
        self.assertEqual([[disk.findtext(column) for column in columns] for disk in root.iter("TsDisk")], expected)

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
