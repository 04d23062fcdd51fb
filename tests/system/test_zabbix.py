"""The template in Debian's Zabbix: every item has the value that the daemon serves; problems appear and disappear."""

from harness import machine, monitors, systemTest, waiting, zabbix

QUICK = {"INTERVAL.STATES": "5s", "INTERVAL.TABLES": "5s", "INTERVAL.TEXTS": "5s", "INTERVAL.DISCOVERY": "10s",
         "NODATA": "30s"}
NAME = "disk ä€\u00a0ß"
RULES = {name: {"createMissing": True, "updateExisting": True}
         for name in ("groups", "templates", "items", "discoveryRules", "triggers", "valueMaps")}
del RULES["groups"]["updateExisting"]
POLL_S = 1  # requests to the API take much processor time
MANY = 300  # items, once the rows of all tables have been discovered


def is_current(item, value):
    """Returns whether an item is supported and has this value."""
    if item["key_"].startswith("zabbix["):
        value = 1
    try:
        return item["state"] == "0" and float(item["lastvalue"]) == float(value)
    except (ValueError, TypeError):
        return item["lastvalue"] == value


class Zabbix(monitors.MonitorStory):
    NAMED = ("TsDisk", NAME)

    @classmethod
    def launch(cls):
        super().launch()
        cls.server = zabbix.Zabbix()
        cls.addClassCleanup(cls.server.close)
        cls.server.start()
        cls.translator = monitors.TrapTranslator(zabbix.TRAPS, ("zabbix", "snmptt.conf"))
        cls.addClassCleanup(cls.translator.close)
        cls.host = cls.add_host()
        cls.wait_until_settled()

    @classmethod
    def add_host(cls):
        text = machine.read_file(monitors.made("zabbix", "tessera-6.0.yaml"))
        assert cls.server.call("configuration.import", format="yaml", source=text, rules=RULES)
        template, = cls.server.call("template.get", filter={"host": "Tessera storage array by SNMP"})
        group = cls.server.call("hostgroup.create", name="arrays")["groupids"][0]
        details = {"version": 2, "bulk": 1, "community": "public"}
        interface = {"type": 2, "main": 1, "useip": 1, "ip": "127.0.0.1", "dns": "", "port": "161",
                     "details": details}
        return cls.server.call(
            "host.create", host="array1", groups=[{"groupid": group}], interfaces=[interface],
            templates=[{"templateid": template["templateid"]}],
            macros=[{"macro": f"{{$TESSERA.{name}}}", "value": value} for name, value in QUICK.items()])["hostids"][0]

    def items(self):
        """Returns the items that Zabbix polls."""
        return [item for item in self.server.call("item.get", hostids=self.host, filter={"status": 0},
                                                  output=["key_", "name", "state", "error", "lastvalue", "lastclock"])
                if not item["key_"].startswith("snmptrap")]

    def problems(self):
        return {problem["name"] for problem in self.server.call("problem.get", hostids=self.host)}

    def wait_for_problem(self, text, there=True):
        waiting.wait_until(lambda: any(text in name for name in self.problems()) == there,
                           f"{text}: {'a' if there else 'no'} problem", 180, POLL_S)

    def test_every_item_has_the_value_that_is_served(self):
        served = {}
        for column, rows in monitors.served(self.manager).items():
            for row, value in rows.items():
                served[column if row == (0,) else f"{column}[{'.'.join(map(str, row))}]"] = value

        def all_current():
            items = {item["key_"]: item for item in self.items()}
            columns = {key.partition("[")[0] for key in items}
            self.wrong = [key for key in served if key.partition("[")[0] in columns and key not in items]
            self.wrong += [(key, item["error"] or item["lastvalue"], served.get(key))
                           for key, item in items.items() if not is_current(item, served.get(key))]
            return not self.wrong and len(items) > MANY

        try:
            waiting.wait_until(all_current, "every item has its value", 300, POLL_S)
        except waiting.TimedOut:
            self.fail(self.wrong)
        self.assertIn(f"disk {NAME} (row 1): tsDiskStatus", [item["name"] for item in self.items()])

    def test_a_failing_disk_is_a_problem_until_it_recovers(self):
        index, problem = self.array.first("TsDisk"), f"{NAME} (row 1): tsDiskStatus is down"
        self.array.fail("TsDisk", index)
        self.wait_for_problem(problem)
        self.array.recover("TsDisk", index)
        self.wait_for_problem(problem, False)
        waiting.wait_until(lambda: "Over: " in self.notified() and f"tsDiskName={NAME} " in self.notified(),
                           "Zabbix has the notification", poll_s=POLL_S)

    def notified(self):
        return self.server.call("item.get", hostids=self.host, filter={"key_": 'snmptrap["tsDiskStatusChange: "]'},
                                output=["lastvalue"])[0]["lastvalue"]

    def test_z_a_missing_response_is_a_problem(self):
        self.daemon.stop()
        self.wait_for_problem("does not answer")


if __name__ == "__main__":
    if zabbix.missing():
        machine.skip(f"not installed: {', '.join(zabbix.missing())}")
    if not machine.has_users():
        machine.skip("the database needs a separate user")
    systemTest.main()
