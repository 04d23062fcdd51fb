"""The catalogue as plain data: for the completion of a command line client, and for reference pages."""

import json

from codegen.model.catalogue import BASES


def describe_attribute(attribute):
    out = {"name": attribute.name, "kind": attribute.kind, "label": attribute.label, "width": attribute.width}
    out.update(attribute.rules)
    if attribute.flagged:
        out["flagged"] = True
    return out


def describe_argument(argument):
    out = describe_attribute(argument.attribute)
    out["needed"] = argument.needed
    return out


def describe_command(command):
    return {"name": command.name, "changesState": command.changes_state, "privilege": command.privilege,
            "arguments": [describe_argument(each) for each in command.arguments]}


def describe_object(each):
    return {"name": each.name, "text": each.text, "base": BASES[each.base],
            "attributes": [describe_attribute(a) for a in each.attributes + each.inherited()],
            "commands": [describe_command(command) for command in each.commands],
            "associations": each.associations}


def describe_method_object(each):
    return {"name": each.name, "text": each.text,
            "attributes": [describe_attribute(attribute) for attribute in each.attributes]}


def render_json(catalogue):
    return json.dumps({"objects": [describe_object(each) for each in catalogue.objects],
                       "methodObjects": [describe_method_object(each) for each in catalogue.method_objects]},
                      indent=1) + "\n"
