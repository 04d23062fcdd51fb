"""The guided tour, in the sandbox: an array, the daemon and snmpd, seen through Net-SNMP's own tools."""

import argparse
import os
import subprocess
import sys
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.realpath(__file__)), "..", "..", "tests", "system"))
from harness import array, daemon, machine, manager, mib, waiting  # noqa: E402  (found through the line above)

STATUS = {"1": "Up", "2": "Down", "3": "Degraded"}
TRUTH = {"1": "yes", "2": "no"}
GLOBAL_STATUS = {2: "unknown alert", 3: "no open alert seen so far", 4: "an alert is open", 5: "a severe alert is open"}
BACKGROUND_LIMIT_S = 240
FOREGROUND_LIMIT_S = 120


def say(text):
    print(f"\n-- {text}", flush=True)


def show_command(*words):
    print(f"   $ {' '.join(words)}", flush=True)


def print_table(heads, rows):
    widths = [max(len(str(row[i])) for row in [heads, *rows]) for i in range(len(heads))]
    for row in [heads, ["-" * width for width in widths], *rows]:
        print("   " + "  ".join(str(cell).ljust(width) for cell, width in zip(row, widths)).rstrip(), flush=True)


class Tour:
    def __init__(self, preset):
        self.preset = preset
        self.array = array.Array()
        self.daemon = daemon.Daemon()
        self.reader = manager.Manager()
        self.writer = manager.Manager(community="private")

    def start(self):
        say(f"a simulated array of the size '{self.preset}' on /tmp/apimgr.sock")
        show_command("arraySim serve --preset", self.preset)
        self.array.start(self.preset)
        say("the daemon; it starts snmpd, fills its store from the array, and proves the chain with a real GET")
        show_command("snmpSubagent")
        begin = time.monotonic()
        self.daemon.start()
        print(f"   up and running after {time.monotonic() - begin:.1f} s", flush=True)

    def stop(self):
        self.daemon.stop()
        self.array.stop()

    def show_scalars(self):
        say("the product, as any manager sees it")
        show_command("snmpwalk -v2c -c public localhost", mib.ROOT)
        for name in ("productName", "productVendor", "productVersion", "productServiceTag", "managementUrl",
                     "globalStatus"):
            value = self.reader.value(mib.scalar(name))
            note = f"  ({GLOBAL_STATUS[value]})" if name == "globalStatus" else ""
            print(f"   {name:18} {value}{note}", flush=True)

    def rows(self, table):
        """The rows of a table, by column without the table's name."""
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
        expect(answer.status == 0, f"the SET is taken: {answer}")
        # The answer does not wait for the array.
        waiting.wait_until(lambda: self.array.get("Tessera", 1, "Location") == "Hall 4, rack <7>",
                           "the array has the new location")
        print(f"   the array says: {self.array.get('Tessera', 1, 'Location')}", flush=True)
        print(f"   SNMP says:      {self.reader.value(place)}", flush=True)

    def show_failing_controller(self):
        say("a controller fails; small tables are refreshed every half minute or so")
        self.watch("TsController", "tsCtlrStatus", "Degraded", FOREGROUND_LIMIT_S)

    def show_failing_disk(self):
        say("a disk fails; large tables are fetched in the background every two to three minutes, so this takes a while")
        self.watch("TsDisk", "tsDiskStatus", "Down", BACKGROUND_LIMIT_S)
        self.show_disks()

    def watch(self, kind, column, status, limit_s):
        objects = self.array.dump()[kind]
        row = next(i for i, each in enumerate(objects, 1) if each["Status"] == "Up")
        index = objects[row - 1]["Index"]
        number = next(int(key) for key, text in STATUS.items() if text == status)
        place = mib.oid(column, row)
        show_command(f"arraySim tell fail {kind} {index} {status}")
        self.array.fail(kind, index, status)
        begin = time.monotonic()
        self.reader.wait_for_value(place, number, limit_s)
        print(f"   {column}.{row} = {number} ({status}), seen after {time.monotonic() - begin:.0f} s", flush=True)
        self.array.recover(kind, index)
        if kind == "TsController":
            self.reader.wait_for_value(place, 1, limit_s)
            print(f"   recovered: {column}.{row} = 1 (Up)", flush=True)

    def open_shell(self):
        say("a shell in the sandbox; 'exit' ends it with everything in it. Try:")
        print("   snmpwalk -v2c -c public localhost 1.3.6.1.4.1.913 | less\n"
              "   arraySim tell help\n"
              "   arraySim tell list\n"
              "   arraySim tell fail TsController 3\n"
              "   tail -f /var/log/snmpSubagent.log      (log lines; 'verbose yes' in /etc/snmpSubagent.conf for more)\n",
              flush=True)
        path = ":".join([os.path.dirname(machine.ARRAY_SIM), os.path.dirname(machine.DAEMON), os.environ["PATH"]])
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
    machine.configure_daemon()
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
        tour.show_failing_controller()
        tour.show_failing_disk()
    except (AssertionError, waiting.WaitedInVain) as error:
        print(f"\ndemo: {error}\n{daemon.Daemon.log_tail(20)}", file=sys.stderr)
        return 1
    finally:
        tour.stop()
    say("that was all, and as expected. To look around yourself: scripts/demo --shell")
    return 0


if __name__ == "__main__":
    sys.exit(main())
