"""The MIB by name, from the data from which the daemon is generated."""

import os
import sys

from . import machine

sys.path.insert(0, machine.REPOSITORY)
from codegen.model import snmp  # noqa: E402  (found through the line above)
from codegen.reader import Data  # noqa: E402

ENTERPRISE = "1.3.6.1.4.1.913.11000.2000.500.1"
OLD_ENTERPRISE = "1.3.6.1.4.1.27405"
ROOT = ENTERPRISE + ".2"
# The modules of the build, and where Net-SNMP's tools find them and what they need.
MODULE, OLD_MODULE = "VORN-LUMIVANT-TESSERA-MIB", "VORN-LUMIVANT-TESSERA-OLD-MIB"
MODULE_FOLDERS = f"{machine.REPOSITORY}/mib/standard:{machine.BUILD}/mib"


def api_kind(object_name):
    """Returns the array's spelling of a kind of object: TsDisk for tsDisk."""
    return object_name[0].upper() + object_name[1:]


MODEL = snmp.read(Data(os.path.join(machine.REPOSITORY, "data")))
MIB, TRAPS = MODEL.mib, MODEL.traps
COLUMNS = {column.name: column for column in MIB.columns}
TABLES = {table.name: table for table in MIB.tables}
# The kind of object that fills each table.
KIND_OF_TABLE = {refresh.table.name: api_kind(refresh.object_name) for refresh in MIB.refreshes}


def oid(name, *instance):
    """Returns the OID of a column, or of an instance: parent and row, row, or 0."""
    return ".".join(map(str, COLUMNS[name].oid + instance))


def scalar(name):
    return oid(name, 0)


def table_oid(name):
    return ".".join(map(str, TABLES[name].oid))


def old_form(text):
    """Returns the OID of the same instance under the old enterprise number."""
    assert text.startswith(ENTERPRISE + ".")
    return OLD_ENTERPRISE + text[len(ENTERPRISE):]


def arcs(text):
    return tuple(int(arc) for arc in text.split("."))
