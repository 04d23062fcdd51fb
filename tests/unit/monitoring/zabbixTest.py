"""Checks the Zabbix templates against Zabbix's limits and against the MIB module. Debian's Zabbix can import only the
older format, which system.zabbix does.
Usage: zabbixTest.py BUILD-DIRECTORY"""

import os
import re
import sys
import unittest

import yaml

sys.dont_write_bytecode = True
HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(HERE, "../mib"))
import moduleFacts  # noqa: E402  (found through the line above)

MACRO = re.compile(r"{#\w+}")
MAX_OID = 512
SYSTEM_GROUP = "1.3.6.1.2.1.1."
build_folder = None


class ZabbixTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.facts = moduleFacts.read(os.path.join(build_folder, "mib", moduleFacts.MODULE + ".txt"))
        cls.older, cls.template = map(cls.template_of, ("tessera-6.0.yaml", "tessera.yaml"))
        cls.walks = {item["key"]: item["snmp_oid"].removeprefix("walk[").rstrip("]").split(",")
                     for item in cls.template["items"] if item.get("snmp_oid", "").startswith("walk[")}

    @staticmethod
    def template_of(name):
        with open(os.path.join(build_folder, "monitoring", "zabbix", name), encoding="utf-8") as file:
            return yaml.safe_load(file)["zabbix_export"]["templates"][0]

    @staticmethod
    def items(template):
        """Returns the items, including prototypes and discovery rules."""
        for rule in template["discovery_rules"]:
            yield from (rule, *rule["item_prototypes"])
        yield from template["items"]

    def test_requests_and_units_are_within_the_limits_of_zabbix(self):
        for item in (*self.items(self.older), *self.items(self.template)):
            self.assertLessEqual(len(item.get("snmp_oid", "")), MAX_OID, item["key"])
            if "units" in item:
                self.assertEqual(item["value_type"], "FLOAT", item["key"])

    def test_items_and_value_maps_match_the_module(self):
        maps = {each["name"]: {int(one["value"]): one["newvalue"] for one in each["mappings"]}
                for each in self.older["valuemaps"]}
        for item in self.items(self.older):
            oid = item.get("snmp_oid", SYSTEM_GROUP).removesuffix(".{#SNMPINDEX}").removesuffix(".0")
            if oid.startswith(("discovery", SYSTEM_GROUP)):
                continue
            column = self.facts["nodes"][item["key"].removesuffix("[{#SNMPINDEX}]")]
            self.assertEqual(column["oid"], oid, item["key"])
            if column["enumeration"]:
                self.assertEqual(maps[item["valuemap"]["name"]], column["enumeration"], item["key"])
                self.assertEqual(item["value_type"], "FLOAT")  # UNSIGNED has no -1

    def test_items_of_the_newer_format_use_the_walk_of_their_table(self):
        for rule in self.template["discovery_rules"]:
            names, places = (rule["preprocessing"][0]["parameters"][first::3] for first in (0, 1))
            self.assertLessEqual(set(MACRO.findall(str(rule["item_prototypes"]))), {*names, "{#SNMPINDEX}"})
            for item in rule["item_prototypes"]:
                self.assertEqual(item["master_item"], rule["master_item"])
                places.append(item["preprocessing"][0]["parameters"][0].removesuffix(".{#SNMPINDEX}"))
            walked = self.walks[rule["master_item"]["key"]]
            self.assertEqual([place for place in places if place.rpartition(".")[0] not in walked], [], rule["key"])


if __name__ == "__main__":
    build_folder = sys.argv.pop(1)
    unittest.main()
