"""Additional objects before those of a preset: when they are removed or added, the rows of the others move."""

import copy

from harness import array

PARTS = ("TsEnclosureAudibleAlarm", "TsEnclosureCoolingFanSensor", "TsEnclosureIoModule", "TsEnclosurePowerSupply",
         "TsEnclosureTemperatureSensor")
FIRST_INDEX, COUNT = 900, 2


def named(original, index, name, **values):
    return {**original, "Status": "Up", "Index": str(index), "Name": name, "InstanceName": name,
            "InstanceId": f"{array.SERIAL}.{index}", **values}


def with_spares(objects):
    """Returns the objects of a preset with two more enclosures, components included, and two more UPSs."""
    objects = copy.deepcopy(objects)
    ups, enclosure = objects["TsUps"][0], objects["TsEnclosure"][0]
    parts = {kind: [each for each in objects[kind] if each["EnclosureIndex"] == enclosure["Index"]] for kind in PARTS}
    for index in range(FIRST_INDEX, FIRST_INDEX + COUNT):
        objects["TsUps"].insert(0, named(ups, index, f"Spare UPS {index}"))
        objects["TsEnclosure"].insert(0, named(enclosure, index, f"Spare {index}"))
        for kind, found in parts.items():
            objects[kind] += [named(each, int(each["Index"]) + 100 * index,
                                    each["Name"].replace(enclosure["Name"], f"Spare {index}"),
                                    EnclosureIndex=str(index)) for each in found]
    return objects
