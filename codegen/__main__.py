"""Writes the generated files of one kind. Run from the repository's root: python3 -m codegen --help"""

import argparse
import sys

from codegen.model import catalogueReader, classNames, metrics, snmp, watches
from codegen.model import settings as settingsReader
from codegen.reader import Data, DataError
from codegen.writers import (apiAssociations, apiHeaders, apiReference, apiRegistration, apiRequests,
                             apiSources, arraySim, catalogueTable, checks, conventionRows, dashboard,
                             enumerations, exporter, icinga, mibModule, mibReference, nagios, output, rules,
                             settings, snmptt, store, traps, zabbix)


def api_files(data):
    """The classes of the API objects, their registration, the enumerations and the reference."""
    catalogue, tables = catalogueReader.read(data)
    yield "apiEnumsIDStrList.h", enumerations.render_header(tables)
    yield "apiEnumsIDStrList.cpp", enumerations.render_source(tables)
    yield "catalogueRegistration.cpp", apiRegistration.render(catalogue)
    yield "apiAssociations.cpp", apiAssociations.render(catalogue)
    yield "apiReference.md", apiReference.render(catalogue, tables)
    yield classNames.METHOD_OBJECT_UNIT + ".h", apiHeaders.render_method_objects(catalogue.method_objects)
    yield classNames.METHOD_OBJECT_UNIT + ".cpp", apiSources.render_method_objects(catalogue.method_objects)
    for each in catalogue.objects:
        yield classNames.unit(each.name) + ".h", apiHeaders.render_object(each)
        yield classNames.unit(each.name) + ".cpp", apiSources.render_object(each)


def client_files(data):
    """The catalogue of the API for apiClient."""
    catalogue, _ = catalogueReader.read(data)
    yield "catalogueTable.cpp", catalogueTable.render(catalogue)


def store_files(data):
    """The daemon's tables: columns, refreshes, requests, notifications."""
    model = snmp.read(data)
    yield "mibColumns.h", store.render_header(model.mib)
    yield "mibColumns.cpp", store.render_source(model.mib)
    yield "apiRequests.h", apiRequests.render(model)
    yield "trapCatalogue.cpp", traps.render_catalogue(model.traps)
    yield "forceTrapHandlers.h", traps.render_handlers_header(model.traps)
    yield "forceTrapHandlers.cpp", traps.render_handlers(model.traps)


def settings_files(data):
    """The daemon's table of settings, and their manual page."""
    found = settingsReader.read(data)
    yield "confSettings.inc", settings.render_rows(found)
    yield "snmpSubagent.conf.5", settings.render_page(found, data.text("daemon/snmpSubagent.conf.5"))


def array_sim_files(data):
    """The data of the simulated array."""
    model = snmp.read(data)
    snmp.check_attributes(model, catalogueReader.read(data)[0])
    yield "modelData.cpp", arraySim.render(model, data.text("array/objects.def"))


def mib_files(data):
    """The MIB modules, their reference, and rows for a test of the conventions."""
    renderer = mibModule.Renderer(snmp.read(data))
    yield renderer.found.module.name + ".txt", renderer.module()
    yield renderer.found.older.name + ".txt", renderer.older_module()
    yield "mib-reference.md", mibReference.Reference(renderer).page()
    yield "conventionRows.inc", conventionRows.render(renderer.found)


def monitoring_files(data):
    """The files for monitoring systems."""
    model = snmp.read(data)
    all_metrics = metrics.read(data, model)
    all_watches = watches.read(data, model, all_metrics)
    modules = exporter.Exporter(model, all_metrics)
    yield "prometheus/snmp.yml", modules.old_form(exporter.AUTH_V2)
    yield "prometheus/snmp-v3.yml", modules.old_form(exporter.AUTH_V3)
    yield "prometheus/snmp-with-auths.yml", modules.new_form()
    yield "prometheus/prometheus.yml", modules.scrapes()
    alerts = rules.Rules(model, all_metrics, all_watches)
    yield "prometheus/tessera.rules.yml", alerts.file(data.text("monitoring/rules.yml"))
    yield "grafana/tessera.json", dashboard.render(model, all_metrics, all_watches, data.lines("monitoring/panels.def"))
    all_checks = checks.Checks(model, all_metrics, all_watches)
    yield "nagios/tessera.cfg", nagios.file(all_checks)
    yield "icinga2/tessera.conf", icinga.file(all_checks)
    yield "zabbix/tessera.yaml", zabbix.WalkTemplate(model, all_metrics, all_watches).file()
    yield "zabbix/tessera-6.0.yaml", zabbix.ObjectTemplate(model, all_metrics, all_watches).file()
    yield "zabbix/snmptt.conf", snmptt.Events(model, all_watches, "ZBXTRAP $aA ").file()
    yield "snmptt/tessera.conf", snmptt.Events(model, all_watches).file()


KINDS = {"api": api_files, "client": client_files, "store": store_files, "settings": settings_files,
         "arraySim": array_sim_files, "mib": mib_files, "monitoring": monitoring_files}


def main():
    kinds = "\n".join(f"  {name:<11} {files.__doc__}" for name, files in KINDS.items())
    parser = argparse.ArgumentParser(prog="codegen", description=f"{__doc__}\n\nkinds:\n{kinds}",
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("kind", choices=KINDS)
    parser.add_argument("--data", default="data", help="the data directory (default: data)")
    parser.add_argument("--out", help="the directory to write to; without it, print the names of the files")
    arguments = parser.parse_args()
    try:
        files = list(KINDS[arguments.kind](Data(arguments.data)))
    except (DataError, OSError) as error:
        print(error, file=sys.stderr)
        return 1
    if arguments.out:
        output.write_files(arguments.out, files)
    else:
        print("\n".join(name for name, _ in files))
    return 0


if __name__ == "__main__":
    sys.exit(main())
