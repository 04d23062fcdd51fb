"""Checks that directories include only those that the table allows, and that there is no cycle between units.

A unit is a header with its source. Generated headers are ignored: the tables of the MIB use functions of all layers.
"""

import collections
import graphlib
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[3]

# Each directory of the programs, and the directories that it may include, which must precede it.
LAYERS = """
apiMgmt/common/platform:
apiMgmt/common/xmlwrap:
apiMgmt/proto:
apiMgmt/common/wirelink: platform
apiMgmt/common/utils: platform wirelink
apiMgmt/common/socketUtils: utils
apiMgmt/common/utils/heartbeat: platform socketUtils
apiMgmt/common/threadpool: platform utils
apiMgmt/apiStub/base/apiAttributes: platform utils
apiMgmt/apiStub/base/apiObjects/base: apiAttributes utils xmlwrap
apiMgmt/apiStub/apiSdk/objects/tessera/src: base xmlwrap
apiMgmt/apiStub/client: apiAttributes base platform utils wirelink xmlwrap
apiMgmt/snmpSubagent/snmpSubagentUtil: platform threadpool utils
apiMgmt/snmpSubagent/snmpSubagentComm: platform snmpSubagentUtil utils wirelink xmlwrap
apiMgmt/snmpSubagent/snmpSubagentMain/settings: snmpSubagentUtil utils
apiMgmt/snmpSubagent/snmpSubagentMibParser: platform snmpSubagentUtil utils
apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh: platform settings snmpSubagentComm snmpSubagentMibParser snmpSubagentUtil
    utils xmlwrap
apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps: platform refresh settings snmpSubagentMibParser snmpSubagentUtil
    threadpool utils
apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request: platform refresh snmpSubagentComm snmpSubagentMibParser
    snmpSubagentUtil threadpool traps
apiMgmt/snmpSubagent/snmpSubagentMain: heartbeat platform proto refresh request settings snmpSubagentComm
    snmpSubagentMibParser snmpSubagentUtil threadpool traps utils wirelink
tools/commandLine: utils
tools/apiClient: apiAttributes base client commandLine src utils wirelink
tools/checkconf: commandLine settings snmpSubagentMibParser snmpSubagentUtil traps utils wirelink
tools/mgmtSend: commandLine proto snmpSubagentMibParser traps utils wirelink
arraySim/model: apiAttributes base utils
arraySim/protocol: apiAttributes base model src utils xmlwrap
arraySim/faults: protocol utils wirelink
arraySim/control: faults mgmtSend model platform protocol utils wirelink
arraySim/scenario: control model utils
arraySim: commandLine control model protocol scenario utils
"""
UNRESTRICTED = ("tests", "bench", "fuzz", "docs", "cmake")


def read_layers():
    layers = {}
    names = {}
    for line in LAYERS.replace("\n    ", " ").strip().splitlines():
        directory, allowed = line.split(":")
        layers[directory] = {names[name] for name in allowed.split()}  # KeyError unless it precedes
        names[directory.rpartition("/")[2]] = directory
    return layers


def read_includes():
    """Yields pairs of paths: a file and a header of the repository that it includes."""
    files = [path.relative_to(ROOT) for top in ("apiMgmt", "arraySim", "tools", *UNRESTRICTED)
             for path in (ROOT / top).rglob("*") if path.suffix in (".cpp", ".h")]
    for path in files:
        for header in re.findall(r'#include "([^"]+)"', (ROOT / path).read_text(encoding="utf-8")):
            if (ROOT / header).is_file():
                yield path, pathlib.Path(header)


def main():
    layers = read_layers()
    units = collections.defaultdict(set)
    used = collections.defaultdict(set)
    for path, header in read_includes():
        if path.with_suffix("") != header.with_suffix(""):
            units[str(path.with_suffix(""))].add(str(header.with_suffix("")))
        if path.parent != header.parent and path.parts[0] not in UNRESTRICTED:
            used[str(path.parent)].add(str(header.parent))
    wrong = [f"{one} includes {other}" for one, others in used.items() for other in others - layers.get(one, set())]
    wrong += [f"{one} no longer includes {other}" for one, others in layers.items() for other in others - used[one]]
    try:
        graphlib.TopologicalSorter(units).prepare()
    except graphlib.CycleError as error:
        wrong.append("a cycle: " + " -> ".join(reversed(error.args[1])))
    print(f"{len(units)} units in {len(used)} directories of {len(layers)} layers", *sorted(wrong), sep="\n")
    return 1 if wrong or len(units) < 200 else 0


if __name__ == "__main__":
    sys.exit(main())
