"""SET: values that reach the array and can be read back, and errors with their bindings."""

from harness import manager, mib, systemTest, waiting

SYSTEM_GROUP = (("sysContact", "Contact"), ("sysName", "Name"), ("sysLocation", "Location"))


class Sets(systemTest.SharedSystemTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.version1 = manager.Manager(community="private", version="1")
        cls.wait_until_settled()

    def set_text(self, oid, text, manager_=None):
        return (manager_ or self.writer).set((oid, "s", text))

    def test_the_system_group_reaches_the_array_and_reads_back(self):
        texts = {"sysContact": "Ida Quill <ida@example.net>", "sysName": "north \"array\" 7", "sysLocation": "</Location><Name>taken & over</Name>"}
        for name, attribute in SYSTEM_GROUP:
            with self.subTest(name=name):
                response = self.set_text(mib.scalar(name), texts[name])
                self.assertEqual(response.status, 0, response)
                self.assertEqual(self.manager.value(mib.scalar(name)), texts[name])
                waiting.wait_until(lambda: self.array.get("Tessera", 1, attribute) == texts[name],
                                   "the array has the new string")
        # The old string may reappear until the array's table is refreshed; then the new one stays.
        for name, attribute in SYSTEM_GROUP:
            self.manager.wait_for_value(mib.oid("tsTs" + attribute, 1), texts[name], 120)
            self.manager.wait_for_value(mib.scalar(name), texts[name], 120)

    def test_one_set_over_several_registrations(self):
        trigger = mib.oid("tsDiskForceTrap", 1)
        response = self.writer.set((mib.scalar("sysContact"), "s", "one of three"),
                                 (mib.old_form(mib.oid("tsCtlrForceTrap", 1)), "s", "ForceTrap"),
                                 (mib.scalar("sysLocation"), "s", "three of three"), (trigger, "s", "ForceTrap"))
        self.assertEqual(response.status, 0, response)
        for attribute, text in (("Contact", "one of three"), ("Location", "three of three")):
            waiting.wait_until(lambda: self.array.get("Tessera", 1, attribute) == text, "the array has both strings")

    def test_a_set_is_all_or_nothing(self):
        before = self.array.get("Tessera", 1, "Contact")
        response = self.writer.set((mib.scalar("sysContact"), "s", "must not arrive"),
                                 (mib.oid("tsCtlrName", 1), "s", "x"), (mib.scalar("sysLocation"), "s", "nor this"))
        self.assertEqual((response.error, response.failed_oid), ("notWritable", mib.oid("tsCtlrName", 1)))
        self.assertEqual(self.array.get("Tessera", 1, "Contact"), before)
        self.assertNotEqual(self.manager.value(mib.scalar("sysContact")), "must not arrive")

    def test_errors_have_a_reason_and_a_binding(self):
        good = (mib.scalar("sysContact"), "s", "good")
        for oid, kind, value, error, error_v1 in (
                (mib.oid("tsCtlrName", 1), "s", "x", "notWritable", "noSuchName"),
                (mib.scalar("worstAlertNbr"), "u", "1", "notWritable", "noSuchName"),
                (mib.oid("tsDiskForceTrap", 1), "s", "forcetrap", "badValue", "badValue"),
                (mib.oid("tsDiskForceTrap", 1999), "s", "ForceTrap", "noSuchName", "noSuchName"),
                (mib.ROOT + ".99.0", "s", "x", "noSuchName", "noSuchName")):
            for form in (str, mib.old_form):
                for place in (0, 1):
                    with self.subTest(oid=form(oid), value=value, place=place):
                        invalid = (form(oid), kind, value)
                        assignments = (invalid, good) if place == 0 else (good, invalid)
                        response = self.writer.set(*assignments)
                        self.assertEqual((response.error, response.failed_oid), (error, form(oid)), response)
                        response = self.version1.set(*assignments)
                        self.assertEqual((response.error, response.failed_oid), (error_v1, form(oid)), response)
        self.assertTrue(self.daemon.is_running())


if __name__ == "__main__":
    systemTest.main()
