"""What managers depend on in the MIB module, according to smidump: names, numbers, types, access, indexes,
enumerations, notifications."""

import ast
import os
import subprocess

HERE = os.path.dirname(os.path.abspath(__file__))
STANDARD = os.path.normpath(os.path.join(HERE, "../../../mib/standard"))
MODULE = "VORN-LUMIVANT-TESSERA-MIB"


def dump(path):
    done = subprocess.run(["smidump", "-c", "/dev/null", "-f", "python", path], stdin=subprocess.DEVNULL,
                          capture_output=True, text=True, check=False,
                          env={**os.environ, "SMIPATH": STANDARD})
    if done.returncode != 0:
        raise AssertionError(f"smidump: status {done.returncode}: {done.stderr}")
    return ast.literal_eval(done.stdout[done.stdout.index("MIB = ") + len("MIB = "):])


def type_of(syntax, typedefs):
    """Returns (name of the type, {number: label} of an enumeration, range)."""
    kind = syntax["type"]
    name = kind.get("name") or kind["basetype"]
    whole = typedefs.get(name, kind)
    labels = {int(each["number"]): label for label, each in whole.items()
              if isinstance(each, dict) and each.get("nodetype") == "namednumber"}
    limits = "".join(f"({each['min']}..{each['max']})" for each in whole.get("ranges", []))
    return name, labels, limits


def read(path):
    """Returns {"nodes": {name: facts}, "types": {name: string}, "notifications": {name: (OID, objects)}}."""
    whole = dump(path)
    typedefs, nodes = whole["typedefs"], {}
    for name, node in whole["nodes"].items():
        kind, labels, limits = type_of(node["syntax"], typedefs) if "syntax" in node else ("", {}, "")
        nodes[name] = {"oid": node["oid"], "nodetype": node["nodetype"], "access": node.get("access", ""),
                       "type": kind, "enumeration": labels, "limits": limits, "index": list(node.get("linkage", [])),
                       "units": node.get("units", "")}
    types = {name: f"{each['basetype']}{type_of({'type': each}, typedefs)[2]} {numbers(type_of({'type': each}, {})[1])}"
             for name, each in typedefs.items()}
    notifications = {name: (each["oid"], list(each["objects"])) for name, each in whole["notifications"].items()}
    return {"nodes": nodes, "types": types, "notifications": notifications}


def numbers(labels):
    return " ".join(f"{label}({number})" for number, label in sorted(labels.items()))


def arcs(oid):
    return tuple(map(int, oid.split(".")))


def reference(facts):
    """Returns one line per fact on which managers can depend."""
    lines = [f"type {name} {text}" for name, text in facts["types"].items()]
    for name, node in sorted(facts["nodes"].items(), key=lambda item: arcs(item[1]["oid"])):
        # The labels of an enumeration belong to its type, but a range belongs to the object.
        limits = node["limits"] if node["type"] not in facts["types"] else ""
        words = [node["nodetype"], name, node["oid"], node["type"] + limits, node["access"]]
        words += [f"index {' '.join(node['index'])}"] if node["index"] else []
        words += [f"units {node['units']}"] if node["units"] else []
        lines.append(" ".join(filter(None, words)))
    for name, (oid, objects) in facts["notifications"].items():
        lines.append(f"notification {name} {oid} {' '.join(objects)}")
    return [line.rstrip() for line in lines]
