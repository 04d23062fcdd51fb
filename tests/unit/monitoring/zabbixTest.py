"""The Zabbix template, checked for consistency and against the MIB module as smidump reads it.
Usage: zabbixTest.py FOLDER-OF-THE-BUILD"""

import os
import re
import sys
import unittest

import yaml

sys.dont_write_bytecode = True
HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(HERE, "../mib"))
import moduleFacts  # noqa: E402  (found through the line above)

UUID = re.compile(r"[0-9a-f]{12}4[0-9a-f]{3}[89ab][0-9a-f]{15}$")
REFERENCE = re.compile(r"\w+\(/([^/]+)/([^,)]+)")
MACRO = re.compile(r"{#\w+}")
WALK = re.compile(r"walk\[([\d.,]+)\]$")
build_folder = None


def everything(value):
    """Yields every mapping below a value."""
    if isinstance(value, dict):
        yield value
        value = list(value.values())
    if isinstance(value, list):
        for each in value:
            yield from everything(each)


class ZabbixTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        with open(os.path.join(build_folder, "monitoring", "zabbix", "tessera.yaml"), encoding="utf-8") as file:
            cls.export = yaml.safe_load(file)["zabbix_export"]
        cls.template = cls.export["templates"][0]
        cls.facts = moduleFacts.read(os.path.join(build_folder, "mib", moduleFacts.MODULE + ".txt"))
        cls.masters = {item["key"]: item for item in cls.template["items"] if item["snmp_oid"].startswith("walk")}
        cls.scalars = [item for item in cls.template["items"] if item["key"] not in cls.masters]

    def prototypes(self):
        """Yields pairs of discovery rule and item prototype."""
        for rule in self.template["discovery_rules"]:
            for item in rule["item_prototypes"]:
                yield rule, item

    def column(self, item):
        """Returns the column of an item's key in the MIB module; None for the system group."""
        return self.facts["nodes"].get(item["key"].removesuffix("[{#SNMPINDEX}]"))

    def test_uuids_are_unique_and_of_version_4(self):
        uuids = [each["uuid"] for each in everything(self.export) if "uuid" in each]
        self.assertGreater(len(uuids), 200)
        self.assertEqual(len(uuids), len(set(uuids)))
        for uuid in uuids:
            self.assertRegex(uuid, UUID)

    def test_dependent_items_read_what_their_master_walks(self):
        for rule, item in self.prototypes():
            self.assertEqual(item["master_item"], rule["master_item"])
            walked = WALK.match(self.masters[item["master_item"]["key"]]["snmp_oid"]).group(1).split(",")
            oid = item["preprocessing"][0]["parameters"][0].removesuffix(".{#SNMPINDEX}")
            self.assertIn(oid, walked)
            self.assertEqual((self.column(item)["oid"], self.column(item)["nodetype"]), (oid, "column"), item["key"])

    def test_rows_are_discovered_with_the_macros_that_names_use(self):
        for rule in self.template["discovery_rules"]:
            parameters = rule["preprocessing"][0]["parameters"]
            walked = WALK.match(self.masters[rule["master_item"]["key"]]["snmp_oid"]).group(1).split(",")
            self.assertTrue(set(parameters[1::3]) <= set(walked), rule["key"])
            known = {*parameters[0::3], "{#SNMPINDEX}"}
            self.assertEqual(set(MACRO.findall(str(rule["item_prototypes"]))) - known, set(), rule["key"])

    def test_value_maps_are_the_enumerations_of_the_module(self):
        maps = {each["name"]: {int(one["value"]): one["newvalue"] for one in each["mappings"]}
                for each in self.template["valuemaps"]}
        used = set()
        for item in (*self.scalars, *(item for _, item in self.prototypes())):
            column = self.column(item)
            name = item.get("valuemap", {}).get("name")
            self.assertEqual(name is not None, column is not None and bool(column["enumeration"]), item["key"])
            if name:
                used.add(name)
                self.assertEqual((name, maps[name]), (column["type"], column["enumeration"]))
                self.assertEqual(item["value_type"], "FLOAT")  # UNSIGNED has no -1
        self.assertEqual(used, set(maps))

    def test_triggers_use_existing_items_and_recover(self):
        keys = {each["key"] for each in everything(self.template) if "key" in each}
        triggers = [each for each in everything(self.template) if "priority" in each]
        self.assertGreater(len(triggers), 40)
        for trigger in triggers:
            for text in (trigger["expression"], trigger.get("recovery_expression", "")):
                for host, key in REFERENCE.findall(text):
                    self.assertEqual(host, self.template["template"])
                    self.assertIn(key, keys, trigger["name"])
            # A number near its limit must not flap; a state is over when it changes.
            if "<" in trigger["expression"].split(" and ")[0]:
                over = float(trigger["recovery_expression"].rpartition(">=")[2])
                self.assertGreater(over, float(re.search(r"\)<(\d+)", trigger["expression"]).group(1)))
            else:
                self.assertRegex(trigger["expression"], r"^last\([^)]*\)=-?\d+( or last\([^)]*\)=-?\d+)*$")


if __name__ == "__main__":
    build_folder = sys.argv.pop(1)
    unittest.main()
