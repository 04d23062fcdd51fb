"""The kinds of objects and components that have notifications, defined independently of the daemon."""

from collections import namedtuple

# kind: of object; status, name: numbers of its columns. The array has no name column.
Subject = namedtuple("Subject", "kind status name")
OBJECTS = {
    202: Subject("tsDisk", 28, 29), 203: Subject("tsController", 17, 18), 205: Subject("tsEnclosure", 38, 39),
    207: Subject("tsDiskFolder", 108, 109), 208: Subject("tsVolume", 116, 117), 209: Subject("tsServer", 121, 122),
    210: Subject("tsControllerCacheCard", 128, 129), 211: Subject("Tessera", 138, None),
    212: Subject("tsUps", 145, 146)}
COMPONENTS = {
    (204, 1): Subject("tsControllerFanSensor", 48, 49), (204, 2): Subject("tsControllerPowerSupply", 60, 61),
    (204, 3): Subject("tsControllerTemperatureSensor", 75, 76), (204, 4): Subject("tsControllerVoltageSensor", 64, 65),
    (206, 1): Subject("tsEnclosureCoolingFanSensor", 86, 87), (206, 2): Subject("tsEnclosurePowerSupply", 91, 92),
    (206, 3): Subject("tsEnclosureTemperatureSensor", 99, 100), (206, 5): Subject("tsEnclosureIoModule", 95, 96),
    (206, 6): Subject("tsEnclosureAudibleAlarm", 104, 105)}
