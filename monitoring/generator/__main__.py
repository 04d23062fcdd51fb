"""python3 -m monitoring.generator --data FOLDER --own FOLDER --out FOLDER: writes the files for monitors."""

import argparse
import os
import sys

from apiMgmt.common.generator import output, reader
from mib.generator.__main__ import build as build_mib

from . import dashboard, exporter, metrics, nagios, rules, snmptt, watches, zabbix


def read_text(path):
    with open(path, encoding="utf-8") as file:
        return file.read()


def files(data, own):
    """(name, text) of every file that is made; raises DataError."""
    def lines(name):
        return reader.read_lines(os.path.join(own, "data", name))

    renderer = build_mib(data)
    all_metrics = metrics.build(renderer, lines("metrics.def"))
    all_watches = watches.build(renderer, all_metrics, lines("watches.def"))
    modules = exporter.Exporter(renderer, all_metrics)
    yield "prometheus/snmp.yml", modules.old_form()
    yield "prometheus/snmp-with-auths.yml", modules.new_form()
    yield "prometheus/prometheus.yml", modules.scrapes()
    template = read_text(os.path.join(own, "templates", "rules.yml"))
    yield "prometheus/tessera.rules.yml", rules.Rules(renderer, all_metrics, all_watches).file(template)
    yield "grafana/tessera.json", dashboard.render(renderer, all_metrics, lines("panels.def"))
    yield "nagios/tessera.cfg", nagios.Commands(renderer, all_metrics, all_watches).file()
    yield "zabbix/tessera.yaml", zabbix.Template(renderer, all_metrics, all_watches).file()
    yield "snmptt/tessera.conf", snmptt.Events(renderer, all_watches).file()


def main():
    parser = argparse.ArgumentParser(prog="generator", description=__doc__)
    parser.add_argument("--data", required=True, help="folder of the data of the MIB store")
    parser.add_argument("--own", required=True, help="folder of data/ and templates/ for monitors")
    parser.add_argument("--out", required=True, help="folder for what is made")
    arguments = parser.parse_args()
    try:
        made = list(files(arguments.data, arguments.own))
    except (reader.DataError, OSError) as error:
        print(error, file=sys.stderr)
        return 1
    for folder in {os.path.dirname(name) for name, _ in made}:
        os.makedirs(os.path.join(arguments.out, folder), exist_ok=True)
    output.write_files(arguments.out, made)
    return 0


if __name__ == "__main__":
    sys.exit(main())
