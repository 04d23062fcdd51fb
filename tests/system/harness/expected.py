"""Computes what a manager must read from the array's objects. The rules are implemented here independently, so that
the daemon and its test cannot share a bug; only the names, OIDs, types and sources of columns come from the project's
data."""

import re

from .mib import COLUMNS, MIB, TABLES, api_kind

SERVER_KINDS = ("TsPhysicalServer", "TsRemoteTessera", "TsServerCluster", "TsVirtualServer")
STANDARD_FOLDERS = (1, 69696969)
MAX_STRING = 3072  # octets; longer strings are truncated
BLOCKS_PER_GB = 1953125
BLOCKS_PER_GIB = 2097152
WEB_ADDRESS = "https://www.vorn-lumivant.example/tessera"

STATUS = {"Up": 1, "Down": 2, "Degraded": 3}
CONNECTIVITY = {"Up": 1, "Down": 2, "Partial": 3}
BATTERY = {"NoBattery": 0, "Normal": 1, "ExpirationPending": 2, "Expired": 3}
CATEGORY = {name: number for number, name in enumerate(("Connectivity", "Disk", "Hardware", "Storage", "System"))}
ALERT_STATUS = {name: number for number, name in enumerate(
    ("Complete", "Critical", "Degraded", "Deleting", "Down", "Emergency", "Inform", "Okay", "Unavailable"))}
PORT_TYPE = {"fibrechannel": 1, "iscsi": 2, "fibrechanneloverethernet": 3, "sas": 4}
SEVERITY = {0: 0, 1: 2, 2: 1, 3: 0, 4: 2, 5: 2, 6: 0, 7: 0, 8: 1, 9: 1}

PROCESS_TEXT = b"empty"
LEADING_NUMBER = re.compile(r"[ \t\n\v\f\r]*([+-]?\d+)")


def leading_number(text, column_type):
    match = LEADING_NUMBER.match(text)
    number = int(match.group(1)) if match else 0
    low, high = (0, 2**32 - 1) if column_type == "unsigned" else (-(2**31), 2**31 - 1)
    return min(max(number, low), high)


def truth_value(text):
    return {"1": 1, "true": 1, "0": 2, "false": 2}.get(text.lower(), 0)


def shortened_version(text):
    return text.rpartition(".")[0] if "." in text else text


def blocks(text):
    match = LEADING_NUMBER.match(text)
    return max(int(match.group(1)), 0) if match else 0


# Conversions by post-process. Any other value is the string itself or its leading number.
POST_PROCESS = {
    "tsstatus_enum": lambda text: STATUS.get(text, -1),
    "connectivity_enum": lambda text: CONNECTIVITY.get(text, -1),
    "battery_status": lambda text: BATTERY.get(text, -1),
    "alert_category": lambda text: CATEGORY.get(text, 5),
    "alert_status": lambda text: ALERT_STATUS.get(text, 9),
    "io_port_type": lambda text: PORT_TYPE.get(text.lower(), 5),
    "truth_value": truth_value,
    "size": lambda text: blocks(text) // BLOCKS_PER_GB,
    "version": shortened_version,
    "force_trap": lambda text: "Empty",
}

WIRE_TYPE = {"string": "STRING", "integer": "INTEGER", "enumeration": "INTEGER", "unsigned": "Gauge32"}


class Expectation:
    """self.values: {OID: (type, value)} of every instance that must be served."""

    def __init__(self, objects):
        self.objects = objects
        self.values = {}
        self.add_tables()
        self.add_folder_usage()
        self.add_scalars()

    def put(self, column, instance, value):
        if column.type == "string":
            value = value.encode() if isinstance(value, str) else value
        self.values[".".join(map(str, column.oid + instance))] = (WIRE_TYPE[column.type], value)

    def put_named(self, name, instance, value):
        self.put(COLUMNS[name], instance, value)

    def value(self, name, *instance):
        found = self.values.get(".".join(map(str, COLUMNS[name].oid + instance)))
        return found[1] if found else None

    # --- tables

    def elements(self, object_name):
        elements = self.objects.get(api_kind(object_name), [])
        if object_name == "tsServer":  # one list of four kinds, served one kind after the other
            return [each for kind in SERVER_KINDS for each in elements if each["ObjectType"] == kind]
        return elements

    def groups(self, table, elements):
        """Returns (instance without the row, elements) for each parent."""
        if not table.parent:
            return [((), elements)]
        tag = f"{table.parent_item.capitalize()}Index"
        parents = self.elements(table.parent.object_name)[:table.parents]
        parents = [leading_number(each["Index"], "integer") for each in parents]
        return [((number,), [each for each in elements if leading_number(each[tag], "integer") == index])
                for number, index in enumerate(parents, 1)]

    @staticmethod
    def refreshes():
        return MIB.refreshes

    def add_tables(self):
        for refresh in self.refreshes():
            elements = self.elements(refresh.object_name)
            for prefix, rows in self.groups(refresh.table, elements):
                for row, element in enumerate(rows[:refresh.table.rows], 1):
                    self.add_row(refresh, prefix + (row,), element)
            self.add_first_element(refresh, elements)

    def add_row(self, refresh, instance, element):
        self.put(refresh.table.columns[0], instance, instance[-1])
        for entry in refresh.entries:
            if entry.column.table and entry.attribute in element:
                self.put(entry.column, instance, self.converted(entry, element))

    def add_first_element(self, refresh, elements):
        """Adds the scalars that the response for a table also fills."""
        for entry in refresh.entries if elements else ():
            if not entry.column.table and entry.attribute in elements[0]:
                self.put(entry.column, (0,), self.converted(entry, elements[0]))

    def converted(self, entry, element):
        text = element[entry.attribute]
        if entry.post_process in POST_PROCESS:
            return POST_PROCESS[entry.post_process](text)
        if entry.post_process == "vendor_product":
            return f"{element['Vendor']} {element['Product']}"
        if entry.post_process == "management_url":
            return self.management_url()
        return text if entry.column.type == "string" else leading_number(text, entry.column.type)

    def management_url(self):
        tessera, controller = self.elements("Tessera")[0], self.elements("tsController")[0]
        candidates = [tessera.get("ManagementIp", "")]
        if leading_number(tessera.get("IPv6ManagementIPPrefix", ""), "unsigned"):
            return "https://" + tessera["IPv6ManagementIP"] if self.is_no_address(candidates[0]) \
                else "https://" + candidates[0]
        candidates.append(controller.get("IpAddress", ""))
        for address in candidates:
            if not self.is_no_address(address):
                return "https://" + address
        return WEB_ADDRESS

    @staticmethod
    def is_no_address(text):
        return text == "" or text.startswith("0")

    def add_folder_usage(self):
        usages = {leading_number(each["Index"], "unsigned"): each
                  for each in self.objects.get("TsDiskFolderStorageUsage", [])}
        rows = len(self.elements("tsDiskFolder")[:TABLES["tsDiskFolder"].rows])
        for row in range(1, rows + 1):
            index = self.value("tsDiskFolderApiIndex", row)
            self.put_named("tsFolderUsageNbr", (row,), row)
            if index in STANDARD_FOLDERS:
                self.add_usage_row(row, {})
            elif index in usages:
                self.add_usage_row(row, usages[index])

    def add_usage_row(self, row, usage):
        def value(attribute, unit):
            return blocks(usage.get(attribute, "0")) // unit

        total, used = value("TotalSpace", BLOCKS_PER_GB), value("UsedSpace", BLOCKS_PER_GB)
        self.put_named("tsFolderUsageTotalGb", (row,), total)
        self.put_named("tsFolderUsageUsedGb", (row,), used)
        for name, attribute in (("Total", "TotalSpace"), ("Used", "UsedSpace"), ("Allocated", "AllocatedSpace"),
                                ("Free", "FreeSpace"), ("Spare", "SpareSpace")):
            self.put_named(f"tsFolderUsage{name}Gib", (row,), value(attribute, BLOCKS_PER_GIB))
        self.put_named("tsDiskFolderFreePercent", (row,), (total - used) * 100 // total if total else 0)
        self.put_named("tsDiskFolderFreeGib", (row,), self.value("tsFolderUsageFreeGib", row))

    # --- scalars

    def add_scalars(self):
        status, worst = self.global_status()
        for column in MIB.columns:
            if column.table or column.name == "sysServices":  # snmpd serves sysServices itself
                continue
            if column.source == "constant":
                self.put(column, (0,), column.argument if column.type == "string" else int(column.argument))
            elif column.source == "copy":
                self.put(column, (0,), self.value(column.argument, 1))
            elif column.source == "process":
                self.put(column, (0,), PROCESS_TEXT if column.type == "string" else 0)
        self.put_named("worstAlertNbr", (0,), worst)
        self.put_named("globalStatus", (0,), status)

    def global_status(self):
        """Returns the global status, and the row of the alert that determines it (0: none)."""
        severity, worst = 0, 0
        for parent, row in self.counted_alerts():
            if self.value("tsAlertActive", parent, row) != 1 or self.value("tsAlertAcknowledged", parent, row) == 1:
                continue
            own = SEVERITY[self.value("tsAlertStatus", parent, row)]
            if own > severity:
                severity, worst = own, row
            if severity == 2:
                break
        return 3 + severity, worst

    def counted_alerts(self):
        """Yields the alerts that count: all before the first missing row."""
        table = TABLES["tsAlert"]
        for parent in range(1, table.parents + 1):
            for row in range(1, table.rows + 1):
                if self.value("tsAlertStatus", parent, row) is None:
                    return
                yield parent, row
