"""Records a simulated array with Prometheus and draws the dashboard's panels from it, in the sandbox.
Usage: recordDashboard.py MINUTES PICTURE"""

import json
import os
import re
import subprocess
import sys
import time
import urllib.parse
import urllib.request

import panelsToSvg

sys.path.insert(0, os.path.join(os.path.dirname(os.path.realpath(__file__)), "..", "..", "tests", "system"))
from harness import machine, monitors, systemTest, waiting  # noqa: E402  (found through the line above)

HOME, ADDRESS = "/tmp/monitors/prometheus", "127.0.0.1:9090"
INTERVAL_S = 20  # the three jobs together need most of it
LEGEND_LABEL = re.compile(r"{{(\w+)}}")


class Prometheus:
    """The server with the build's configuration, but shorter intervals."""

    def __init__(self):
        os.makedirs(HOME)
        text = machine.read_file(monitors.made("prometheus", "prometheus.yml"))
        text = re.sub(r"(scrape_interval|scrape_timeout): .*", rf"\1: {INTERVAL_S}s", text)
        machine.write_file(f"{HOME}/prometheus.yml", text)
        machine.write_file(f"{HOME}/tessera.rules.yml",
                           machine.read_file(monitors.made("prometheus", "tessera.rules.yml")))
        with open(f"{HOME}/output", "wb") as output:
            self.process = subprocess.Popen(
                ["prometheus", f"--config.file={HOME}/prometheus.yml", f"--storage.tsdb.path={HOME}/data",
                 f"--web.listen-address={ADDRESS}"], stdin=subprocess.DEVNULL, stdout=output, stderr=output)

    @staticmethod
    def ask(path, **parameters):
        """Returns the series of a query. Raises an exception if it fails."""
        url = f"http://{ADDRESS}/api/v1/{path}?{urllib.parse.urlencode(parameters)}"
        with urllib.request.urlopen(url, timeout=30) as answer:
            return json.load(answer)["data"]["result"]

    def close(self):
        self.process.terminate()
        self.process.wait(30)


def queried(server, target, begin, end):
    """Returns [(labels, [(time, value)])] of a panel's query."""
    expression = target["expr"].replace("$array", ".*")
    if target["range"]:
        found = server.ask("query_range", query=expression, start=begin, end=end, step=INTERVAL_S)
    else:
        found = server.ask("query", query=expression, time=end)
    return [(each["metric"], [(float(moment), float(value)) for moment, value in each.get("values") or [each["value"]]])
            for each in found]


def named(target, labels):
    return LEGEND_LABEL.sub(lambda match: labels.get(match.group(1), ""), target["legendFormat"])


class Recording(systemTest.SharedSystemTest):
    """A disk, a volume and a server of an array fail one after the other, and one of them recovers."""

    PRESET = "typical"

    @classmethod
    def launch(cls):
        machine.configure_daemon(trapsEnabled="yes", trapDest="127.0.0.1", trapPort=11162)  # so that events are handled
        machine.write_file("/etc/hosts", machine.read_file("/etc/hosts") + "127.0.0.1 array1\n")
        cls.array.start(cls.PRESET, "--events")
        cls.daemon.start()
        cls.wait_until_settled()

    def record(self, minutes):
        """Returns the panels of the dashboard, each with its named series."""
        exporter, server = monitors.Exporter(), Prometheus()
        try:
            waiting.wait_until(lambda: self.is_up(server), "Prometheus has scraped the array", 180)
            begin = time.time()
            for kind in ("TsDisk", "TsVolume", "TsServer"):
                time.sleep(minutes * 60 / 4)
                self.array.fail(kind, self.array.first(kind))
            self.array.recover("TsVolume", self.array.first("TsVolume"))
            time.sleep(minutes * 60 / 4)
            dashboard = json.loads(machine.read_file(monitors.made("grafana", "tessera.json")))
            end = time.time()
            return [(panel, [(named(target, labels), labels, points) for target in panel.get("targets", [])
                             for labels, points in queried(server, target, begin, end)])
                    for panel in dashboard["panels"]]
        finally:
            server.close()
            exporter.close()

    @staticmethod
    def is_up(server):
        try:
            return len(server.ask("query", query="up == 1")) == 3
        except OSError:
            return False


def main():
    machine.require_sandbox()
    minutes, path = float(sys.argv[1]), sys.argv[2]
    Recording.setUpClass()
    try:
        panels = Recording().record(minutes)
    finally:
        Recording.tearDownClass()
    machine.write_file(path, panelsToSvg.picture("Tessera storage array", panels))
    empty = [panel["title"] for panel, series in panels if panel["type"] != "row" and not series]
    print(f"{path} has {len(panels)} panels, without data: {', '.join(empty) or 'none'}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
