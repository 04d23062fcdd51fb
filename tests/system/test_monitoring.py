"""The files for monitoring systems: the real exporter, check_tessera and SNMPTT with the running daemon."""

import yaml

from harness import machine, mib, monitors, systemTest

USER = 'createUser monitor SHA-256 "signing passphrase" AES "encrypting passphrase"\nrouser monitor priv\n'
V3 = '-v3 -l authPriv -u monitor -a SHA-256 -A "signing passphrase" -x AES -X "encrypting passphrase"'
VOLUME = "volume ä"  # name of the first volume
STATES = {"Up": 0, "Degraded": 1, "Down": 2}  # of a disk, and the exit status of a plugin


def instance_of(metric, sample):
    return tuple(int(sample.labels[index["labelname"]]) for index in metric.get("indexes", [])) or (0,)


class Monitoring(monitors.MonitorStory):
    PRESET = "typical"
    NAMED = ("TsVolume", VOLUME)

    @classmethod
    def launch(cls):
        cls.translator = monitors.TrapTranslator()
        cls.addClassCleanup(cls.translator.close)
        machine.write_file(machine.SNMPD_CONF, machine.read_file(machine.SNMPD_CONF) + USER, 0o600)
        super().launch()
        cls.wait_until_settled()
        cls.exporter = monitors.Exporter()
        cls.addClassCleanup(cls.exporter.close)
        cls.plugins = monitors.Plugins()
        cls.known_samples = {}
        cls.modules = yaml.safe_load(machine.read_file(monitors.made("prometheus", "snmp.yml")))

    def samples(self, module):
        """Returns the samples of one scrape, which takes seconds; most tests do not need a new one."""
        if module not in self.known_samples:
            self.known_samples[module] = self.exporter.scrape(module)
        return self.known_samples[module]

    # --- Prometheus

    def test_every_metric_is_scraped_with_its_labels_and_value(self):
        served = monitors.served(self.manager)
        for name, module in self.modules.items():
            samples = self.samples(name)
            self.assertTrue(samples, name)
            for metric in module["metrics"]:
                with self.subTest(module=name, metric=metric["name"]):
                    self.assert_scraped(metric, samples, served)

    def assert_scraped(self, metric, samples, served):
        series = metric["name"] + ("_info" if metric["type"] == "EnumAsInfo" else "")
        own = [sample for sample in samples if sample.name == series]
        values = served[metric["name"]]
        self.assertEqual({instance_of(metric, sample) for sample in own}, set(values))
        for sample in own:
            instance = instance_of(metric, sample)
            for lookup in metric.get("lookups", []):
                label = lookup["labelname"]
                rows = instance[:len(lookup["labels"])]
                self.assertEqual(sample.labels[label], str(served[label].get(rows, "")), f"{label} of {sample}")
            self.assert_value(metric, sample, values[instance])

    def assert_value(self, metric, sample, value):
        shown = sample.labels.get(metric["name"])
        if metric["type"].startswith("Enum"):
            labels = metric["enum_values"]
            self.assertIn(shown, labels.values(), sample)
            self.assertEqual(sample.value, 1.0 if labels.get(value) == shown else 0.0, sample)
        elif metric["type"] == "gauge" or "regex_extracts" in metric:
            self.assertEqual(sample.value, float(value), sample)
        else:
            self.assertEqual((shown, sample.value), (str(value), 1.0))

    # --- Nagios and compatible systems

    def test_every_command_finds_its_object(self):
        for command in self.plugins.commands:
            column = mib.oid(command.removeprefix("check_tessera_")) + "."
            first = self.manager.get_next(column.rstrip(".")).bindings[0].oid
            self.assertTrue(first.startswith(column), f"{command}: the array has no such object")
            instance = first.removeprefix(column)
            status, output = self.plugins.run(command, instance)
            self.assertIn(status, (0, 1, 2), f"{command}: {output}")
            self.assertRegex(output, r"^\w+ (OK|WARNING|CRITICAL) - ", command)
            self.assertEqual("|" in output, "FreePercent" in command, output)

    def test_a_name_in_any_script_is_also_shown_to_an_snmpv3_user(self):
        for snmp in ("-v2c -c public", V3):
            _, output = self.plugins.run("check_tessera_tsVolumeStatus", "1", snmp)
            self.assertRegex(output, f"^tsVolumeStatus [A-Z]+ - {VOLUME}: [a-z]+$")
        version3 = monitors.Exporter("snmp-v3.yml", 9117)
        self.addCleanup(version3.close)
        names = {sample.labels["tsVolumeName"] for sample in version3.scrape("tessera")
                 if sample.name == "tsVolumeStatus"}
        self.assertIn(VOLUME, names)

    def test_a_failing_disk_goes_through_all_states(self):
        row, disk = self.healthy_disk()
        place = mib.oid("tsDiskStatus", row)
        for state in ("Up", "Degraded", "Down", "Up"):
            if state == "Up":
                self.array.recover("TsDisk", disk["Index"])
            else:
                self.array.fail("TsDisk", disk["Index"], state)
            self.manager.wait_for_value(place, {"Up": 1, "Down": 2, "Degraded": 3}[state])
            status, output = self.plugins.run("check_tessera_tsDiskStatus", str(row))
            self.assertEqual(status, STATES[state], output)
            self.assertIn(disk["Name"], output)
            self.assertEqual(self.scraped_states(disk), [state.lower()])
        named = f"tsDiskName={disk['Name']} "
        for severity in ("WARNING", "CRITICAL", "NORMAL"):
            line = self.translator.wait_for("tsDiskStatusChange", f" {severity} ", named)
            self.assertEqual(severity == "NORMAL", "Over: " in line, line)
        self.assertEqual(len([line for line in self.translator.lines("tsDiskStatusChange") if named in line]), 3)

    def scraped_states(self, disk):
        return [sample.labels["tsDiskStatus"] for sample in self.exporter.scrape("tessera")
                if sample.name == "tsDiskStatus" and sample.labels["tsDiskName"] == disk["Name"] and sample.value]

    def healthy_disk(self):
        """Returns the row and the attributes of a disk that is Up and in a folder that is Up."""
        objects = self.array.dump()
        folders = [each["Index"] for each in objects["TsDiskFolder"] if each["Status"] == "Up"]
        return next((row, each) for row, each in enumerate(objects["TsDisk"], 1)
                    if each["Status"] == "Up" and each["DiskFolderIndex"] in folders)


if __name__ == "__main__":
    systemTest.main()
