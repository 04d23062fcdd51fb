"""The guided tour, in the sandbox: an array, the daemon and snmpd, seen through Net-SNMP's own tools."""

import argparse
import os
import subprocess
import sys
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.realpath(__file__)), "..", "..", "tests", "system"))
from harness import array, daemon, machine, manager, mib, receiver, waiting  # noqa: E402  (found through the line above)

STATUS = {"1": "Up", "2": "Down", "3": "Degraded"}
TRUTH = {"1": "yes", "2": "no"}
GLOBAL_STATUS = {2: "unknown alert", 3: "no open alert seen so far", 4: "an alert is open", 5: "a severe alert is open"}
ALERT_STATE = {"1": "cleared", "2": "active"}
# The meaning of numbers in a notification, by the end of the column's name.
MEANINGS = (("AlertState", ALERT_STATE), ("Status", STATUS), ("Healthy", TRUTH))
BACKGROUND_LIMIT_S = 240
FOREGROUND_LIMIT_S = 120

MGMT_SEND = os.path.join(machine.BUILD, "tools", "mgmtSend", "mgmtSend")

TRAP_PORT = 11162
TRAP_COMMUNITY = "watch"
TRAP_OID = "1.3.6.1.6.3.1.1.4.1.0"
COLD_START = "1.3.6.1.6.3.1.1.5.1"
NOTIFICATIONS = mib.ENTERPRISE + ".251.0."


def say(text):
    print(f"\n-- {text}", flush=True)


def show_command(*words):
    print(f"   $ {' '.join(words)}", flush=True)


def print_table(heads, rows):
    widths = [max(len(str(row[i])) for row in [heads, *rows]) for i in range(len(heads))]
    for row in [heads, ["-" * width for width in widths], *rows]:
        print("   " + "  ".join(str(cell).ljust(width) for cell, width in zip(row, widths)).rstrip(), flush=True)


def column_of(oid):
    """Returns the name of the column that an instance belongs to, or the OID itself if it is not in the MIB."""
    for column in mib.MIB.columns:
        if oid.startswith(".".join(map(str, column.oid)) + "."):
            return column.name
    return oid


def reading_of(name, value):
    """Returns a human-readable value."""
    if isinstance(value, bytes):
        return value.decode("utf-8", "replace")
    for end, meaning in MEANINGS:
        if name.endswith(end) and str(value) in meaning:
            return f"{value} ({meaning[str(value)]})"
    return str(value)


class Watcher:
    """snmptrapd on its own port, and the number of notifications that were shown."""

    def __init__(self):
        self.trapd = receiver.Trapd(f"authCommunity log {TRAP_COMMUNITY}", TRAP_PORT)
        self.seen = 0

    def next(self):
        """Waits for the next notification. Returns (name, {column: value})."""
        self.seen += 1
        bindings = self.trapd.wait_for(self.seen)[self.seen - 1][1]
        values = {column_of(each.oid): each.value for each in bindings}
        return self.name_of(values[TRAP_OID].lstrip(".")), values

    def name_of(self, oid):
        if oid == COLD_START:
            return "coldStart"
        return mib.TRAPS.notification(int(oid.removeprefix(NOTIFICATIONS))).name

    def show_next(self):
        name, values = self.next()
        print(f"   snmptrapd got {name}", flush=True)
        for column, value in values.items():
            if column in mib.COLUMNS:
                print(f"      {column:28} {reading_of(column, value)}", flush=True)
        return name, values

    def show_expected(self, name, **wanted):
        """Shows the next notification and checks its name and these values."""
        got, values = self.show_next()
        expect(got == name, f"the next notification is {name}, not {got}")
        for column, value in wanted.items():
            expect(values[column] == value, f"{column} is {value}, not {values[column]}")


class Tour:
    def __init__(self, preset):
        self.preset = preset
        self.array = array.Array()
        self.daemon = daemon.Daemon()
        self.reader = manager.Manager()
        self.writer = manager.Manager(community="private")
        self.watcher = None

    def start(self):
        say(f"a notification receiver: snmptrapd on port {TRAP_PORT}")
        show_command(f"snmptrapd -f udp:127.0.0.1:{TRAP_PORT}")
        self.watcher = Watcher()
        say(f"a simulated array, preset '{self.preset}', on /tmp/apimgr.sock")
        show_command("arraySim serve --events --preset", self.preset)
        self.array.start(self.preset, "--events")
        say("the daemon: it starts snmpd, fills its store from the array, and tests the whole chain with a GET")
        show_command("snmpSubagent")
        begin = time.monotonic()
        self.daemon.start()
        print(f"   up and running after {time.monotonic() - begin:.1f} s", flush=True)
        self.watcher.show_expected("coldStart")

    def stop(self):
        self.daemon.stop()
        self.array.stop()
        if self.watcher:
            self.watcher.trapd.close()

    def show_scalars(self):
        say("the product, as a manager sees it")
        show_command("snmpwalk -v2c -c public localhost", mib.ROOT)
        for name in ("productName", "productVendor", "productVersion", "productServiceTag", "managementUrl",
                     "globalStatus"):
            value = self.reader.value(mib.scalar(name))
            note = f"  ({GLOBAL_STATUS[value]})" if name == "globalStatus" else ""
            print(f"   {name:18} {value}{note}", flush=True)

    def rows(self, table):
        """Returns the rows of a table as {column name without that of the table: value}."""
        show_command("snmpbulkwalk -v2c -c public localhost", mib.table_oid(table))
        values = self.reader.bulk_walk(mib.table_oid(table)).by_oid()
        rows = {}
        for column in mib.TABLES[table].columns:
            prefix = ".".join(map(str, column.oid)) + "."
            for oid, binding in values.items():
                if oid.startswith(prefix):
                    value = binding.value.decode("utf-8", "replace") if binding.type == "STRING" else str(binding.value)
                    rows.setdefault(oid[len(prefix):], {})[column.name.removeprefix(table)] = value
        return list(rows.values())

    def show_controllers(self):
        say("the controllers")
        rows = self.rows("tsCtlr")
        print_table(["row", "name", "status", "address", "model", "leader"],
                    [[r["Nbr"], r["Name"], STATUS[r["Status"]], r["IpAddr"], r["Model"], TRUTH[r["Leader"]]] for r in rows])
        expect(len(rows) == len(self.array.dump()["TsController"]), "every controller is served")

    def show_disks(self):
        say("the disks (at most 15 are shown)")
        rows = self.rows("tsDisk")
        print_table(["row", "API index", "name", "status", "healthy", "GB", "message"],
                    [[r["Nbr"], r["ApiIndex"], r["Name"], STATUS[r["Status"]], TRUTH[r["Healthy"]], r["SizeGb"],
                      r["StatusMsg"]] for r in rows[:15]])
        expect(len(rows) == len(self.array.dump()["TsDisk"]), "every disk is served")

    def show_set(self):
        say("a SET reaches the array")
        place = mib.scalar("sysLocation")
        show_command("snmpset -v2c -c private localhost sysLocation.0 s 'Hall 4, rack <7>'")
        answer = self.writer.set((place, "s", "Hall 4, rack <7>"))
        expect(answer.status == 0, f"the SET succeeds: {answer}")
        # The response does not wait for the array.
        waiting.wait_until(lambda: self.array.get("Tessera", 1, "Location") == "Hall 4, rack <7>",
                           "the array has the new location")
        print(f"   the array says: {self.array.get('Tessera', 1, 'Location')}", flush=True)
        print(f"   SNMP says:      {self.reader.value(place)}", flush=True)

    def show_failing_disk(self):
        say("a disk fails: the array sends an event, the daemon a notification; its disk folder is affected, too")
        row, disk = self.failing_disk()
        place = mib.oid("tsDiskStatus", row)
        show_command(f"arraySim tell fail TsDisk {disk['Index']}")
        self.array.fail("TsDisk", disk["Index"])
        self.show_disk_notifications(disk, alert=2, disk_status=2, folder_status=3)
        expect(self.reader.value(place) == 2, "SNMP serves the new status")
        print(f"   tsDiskStatus.{row} = 2 (Down), served from now on; the other columns follow with the next refresh",
              flush=True)
        say("the disk recovers: the notifications report the end of the alerts")
        show_command(f"arraySim tell recover TsDisk {disk['Index']}")
        self.array.recover("TsDisk", disk["Index"])
        self.show_disk_notifications(disk, alert=1, disk_status=1, folder_status=1)
        expect(self.reader.value(place) == 1, "SNMP serves the new status")

    def failing_disk(self):
        """Returns row and attributes of a disk that is Up and whose folder is Up."""
        objects = self.array.dump()
        healthy = [each["Index"] for each in objects["TsDiskFolder"] if each["Status"] == "Up"]
        return next((row, each) for row, each in enumerate(objects["TsDisk"], 1)
                    if each["Status"] == "Up" and each["DiskFolderIndex"] in healthy)

    def show_disk_notifications(self, disk, alert, disk_status, folder_status):
        self.watcher.show_expected("tsDiskStatusChange", tsDiskName=disk["Name"].encode(), tsDiskStatus=disk_status,
                                   trapAlertState=alert)
        self.watcher.show_expected("tsDiskFolderStatusChange", tsDiskFolderStatus=folder_status, trapAlertState=alert)

    def show_refreshes(self):
        say("changes without an event appear with the next refresh: small tables about every half minute")
        self.watch("TsController", "Name", "tsCtlrName", "Controller in bay 1", FOREGROUND_LIMIT_S)
        say("large tables are refreshed in the background every two to three minutes, so this takes a while")
        self.watch("TsDisk", "StatusMessage", "tsDiskStatusMsg", "Replace before next week", BACKGROUND_LIMIT_S)

    def watch(self, kind, attribute, column, text, limit_s):
        index = self.array.first(kind)
        show_command(f"arraySim tell set {kind} {index} {attribute} {text}")
        self.array.set(kind, index, attribute, text)
        begin = time.monotonic()
        self.reader.wait_for_value(mib.oid(column, 1), text, limit_s)
        print(f"   {column}.1 = {text}, seen after {time.monotonic() - begin:.0f} s", flush=True)

    def show_message_by_hand(self):
        say("an operator sends an event")
        show_command("mgmtSend trap misc --alert 'planned work tonight'")
        machine.run(MGMT_SEND, "trap", "misc", "--alert", "planned work tonight")
        self.watcher.show_expected("tsMiscAlert", trapMiscAlertText=b"planned work tonight")

    def open_shell(self):
        say("a shell in the sandbox; 'exit' stops everything in it. Try:")
        print("   snmpwalk -v2c -c public localhost 1.3.6.1.4.1.913 | less\n"
              "   arraySim tell help\n"
              "   arraySim tell list\n"
              "   arraySim tell fail TsController 3\n"
              "   mgmtSend --list\n"
              f"   tail -f {self.watcher.trapd.output}     (notifications as snmptrapd writes them, strings in hexadecimal)\n"
              "   tail -f /var/log/snmpSubagent.log      (log lines; 'verbose yes' in /etc/snmpSubagent.conf for more)\n",
              flush=True)
        programs = (machine.ARRAY_SIM, MGMT_SEND, machine.DAEMON)
        path = ":".join([*map(os.path.dirname, programs), os.environ["PATH"]])
        subprocess.run(["/bin/bash", "--norc", "-i"], check=False,
                       env={**os.environ, "PATH": path, "PS1": "sandbox \\w \\$ ", "MIBS": ""})


def expect(condition, what):
    if not condition:
        raise AssertionError(f"not as expected: {what}")


def main():
    parser = argparse.ArgumentParser(prog="scripts/demo")
    parser.add_argument("--shell", action="store_true")
    parser.add_argument("--preset", choices=("small", "typical"), default="small")
    options = parser.parse_args()
    machine.require_sandbox()
    machine.configure_daemon(trapsEnabled="yes", trapDest="127.0.0.1", trapPort=TRAP_PORT, trapCommun=TRAP_COMMUNITY,
                             trapVer=2)
    tour = Tour(options.preset)
    try:
        tour.start()
        tour.show_scalars()
        if options.shell:
            tour.open_shell()
            return 0
        tour.show_controllers()
        tour.show_disks()
        tour.show_set()
        tour.show_failing_disk()
        tour.show_message_by_hand()
        tour.show_refreshes()
    except (AssertionError, waiting.TimedOut) as error:
        print(f"\ndemo: {error}\n{daemon.Daemon.log_tail(20)}", file=sys.stderr)
        return 1
    finally:
        tour.stop()
    say("done, and everything was as expected. To look around yourself: scripts/demo --shell")
    return 0


if __name__ == "__main__":
    sys.exit(main())
