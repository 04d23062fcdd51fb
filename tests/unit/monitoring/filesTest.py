"""Checks the files for monitoring systems with the programs that read them.
Usage: filesTest.py BUILD-DIRECTORY"""

import json
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

import jsonschema
import yaml

sys.dont_write_bytecode = True
HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(HERE, "../mib"))
import moduleFacts  # noqa: E402  (found through the line above)

build_folder = None

NAGIOS_MAIN = """\
cfg_file={objects}
cfg_file={own}
log_file={folder}/nagios.log
check_result_path={folder}
temp_path={folder}
object_cache_file={folder}/objects.cache
resource_file={folder}/resource.cfg
nagios_user=root
nagios_group=root
"""

# Objects of a site, and a host with a service for one disk, as in the document.
NAGIOS_OWN = """\
define timeperiod {
  timeperiod_name always
  alias always
}
define contact {
  contact_name nobody
  host_notification_period always
  service_notification_period always
  host_notification_options n
  service_notification_options n
  host_notification_commands none
  service_notification_commands none
}
define command {
  command_name none
  command_line /bin/true
}
define host {
  use tessera-array
  host_name array1
  address 127.0.0.1
  contacts nobody
  notification_period always
  check_period always
}
define service {
  use tessera-service
  host_name array1
  service_description disk 7
  check_command check_tessera_tsDiskStatus!7
  contacts nobody
  check_period always
  notification_period always
}
"""


def path(*names):
    return os.path.join(build_folder, "monitoring", *names)


def read(*names):
    with open(path(*names), encoding="utf-8") as file:
        return file.read()


def modules():
    """Returns the exporter's modules by name."""
    return yaml.safe_load(read("prometheus", "snmp.yml"))


def run(*command, folder=None, **environment):
    done = subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False, timeout=120,
                          cwd=folder, env={**os.environ, **environment})
    if done.returncode != 0:
        raise AssertionError(f"{command}: status {done.returncode}: {done.stdout}{done.stderr}")
    return done.stdout + done.stderr


class FilesTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name

    def test_the_exporter_accepts_its_modules(self):
        run("prometheus-snmp-exporter", "--dry-run", f"--config.file={path('prometheus', 'snmp.yml')}")

    def test_the_format_with_auths_is_equivalent(self):
        newer = yaml.safe_load(read("prometheus", "snmp-with-auths.yml"))
        for name, auth in (("snmp.yml", "public_v2"), ("snmp-v3.yml", "monitor_v3")):
            older = yaml.safe_load(read("prometheus", name))
            for module in older.values():
                self.assertEqual({"version": module.pop("version"), **module.pop("auth")}, newer["auths"][auth])
            self.assertEqual(newer["modules"], older)

    def test_the_exporters_generator_derives_the_same_from_the_mib_module(self):
        facts = moduleFacts.read(os.path.join(build_folder, "mib", moduleFacts.MODULE + ".txt"))
        walked = [name for name, node in facts["nodes"].items() if node["nodetype"] in ("table", "scalar")]
        config, made = os.path.join(self.folder, "generator.yml"), os.path.join(self.folder, "made.yml")
        with open(config, "w", encoding="utf-8") as file:
            yaml.safe_dump({"modules": {"all": {"walk": walked}}}, file)
        run("prometheus-snmp-generator", "generate", f"--output-path={made}", folder=self.folder,
            MIBDIRS=f"{moduleFacts.STANDARD}:{os.path.join(build_folder, 'mib')}", MIBS=moduleFacts.MODULE,
            SNMPCONFPATH=self.folder, SNMP_PERSISTENT_DIR=self.folder)
        with open(made, encoding="utf-8") as file:
            theirs = {metric["name"]: metric for metric in yaml.safe_load(file)["all"]["metrics"]}
        for metric in (metric for module in modules().values() for metric in module["metrics"]):
            name = metric["name"]
            if name.startswith("sys"):  # the system group is not in the module
                continue
            other = theirs[name]
            self.assertEqual(metric["oid"], other["oid"], name)
            self.assertEqual(metric.get("enum_values"), other.get("enum_values"), name)
            if not name.startswith("tsFolderUsage"):  # these have the labels of the folder's row
                self.assertEqual(metric.get("indexes"), other.get("indexes"), name)

    def test_prometheus_accepts_its_configuration_and_the_rules_alert(self):
        self.assertIn("SUCCESS", run("promtool", "check", "config", path("prometheus", "prometheus.yml")))
        shutil.copy(path("prometheus", "tessera.rules.yml"), self.folder)
        shutil.copy(os.path.join(HERE, "rulesTest.yml"), self.folder)
        self.assertIn("SUCCESS", run("promtool", "test", "rules", os.path.join(self.folder, "rulesTest.yml")))

    def test_the_dashboard_conforms_to_grafanas_schema(self):
        with open(os.path.join(HERE, "dashboardSchema.json"), encoding="utf-8") as file:
            schema = json.load(file)
        problems = jsonschema.Draft7Validator(schema).iter_errors(json.loads(read("grafana", "tessera.json")))
        self.assertEqual([f"{'/'.join(map(str, each.path))}: {each.message}" for each in problems], [])

    def test_nagios_accepts_the_commands_and_services(self):
        main, own = os.path.join(self.folder, "main.cfg"), os.path.join(self.folder, "own.cfg")
        for name, text in ((own, NAGIOS_OWN), (os.path.join(self.folder, "resource.cfg"), "$USER1$=/plugins\n"),
                           (main, NAGIOS_MAIN.format(objects=path("nagios", "tessera.cfg"), own=own,
                                                     folder=self.folder))):
            with open(name, "w", encoding="utf-8") as file:
                file.write(text)
        output = run("nagios4", "-v", main)
        self.assertIn("Total Errors:   0", output)
        self.assertRegex(output, r"Checked [4-9] services", output)


if __name__ == "__main__":
    build_folder = sys.argv.pop(1)
    unittest.main()
