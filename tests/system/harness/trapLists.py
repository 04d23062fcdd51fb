"""The notifications as tables, written down here anew: which columns they carry, and what belongs to the kinds of
objects and components. Columns go by their numbers."""

from collections import namedtuple

ADDRESSES = (139, 142, 143)
LISTS = {
    200: (13, 12, 14),
    201: (13, 15, 175),
    202: (13, 12, 27, 28, 29, 30, 31, 39, 173, 172, 177, 175),
    203: (13, 12, 16, 17, 18, 173, 172, 175),
    204: (13, 12, 16, 18, 170, 168, 167, 169, 171, 173, 172, 175),
    205: (13, 12, 37, 39, 38, 40, 41, 42, 173, 172, 175),
    206: (13, 12, 37, 39, 170, 168, 167, 169, 171, 173, 172, 175),
    207: (13, 12, 107, 108, 109, 110, 111, 173, 172, 175, 114),
    208: (13, 12, 115, 116, 117, 173, 172, 175),
    209: (13, 12, 120, 121, 122, 123, 124, 173, 172, 175),
    210: (13, 12, 127, 128, 129, 130, 131, 173, 172, 175),
    211: (13, 12, 138, 172, 175),
    212: (13, 12, 144, 145, 146, 147, 148, 173, 172, 175),
    213: (13, 12, 165, 166, 27, 29, 37, 39, 173, 172, 175)}
PLAIN_TEXT = (1, 2, 3, 4, 5, 6, 7, 8, 100, 101)

SUPPORT = ": Contact Vorn Support Services."

class ObjectTrap(namedtuple("ObjectTrap", "kind columns index status owner advice")):
    """Object of the array; columns of its row; column of the API index by which it is found, None: see row_of;
    columns of status and owner; advice."""

    @property
    def name(self):
        """The column of its name; None for the array."""
        return self.columns[2] if len(self.columns) > 1 else None


OBJECTS = {
    202: ObjectTrap("tsDisk", (27, 28, 29, 30, 31, 177), 32, 28, 27, "Disk is Down: Schedule disk replacement."),
    203: ObjectTrap("tsController", (16, 17, 18), None, 17, 16, "Controller is Down" + SUPPORT),
    205: ObjectTrap("tsEnclosure", (37, 38, 39, 40, 41, 42), 46, 38, 37, "Enclosure is Down" + SUPPORT),
    207: ObjectTrap("tsDiskFolder", (107, 108, 109, 110, 111, 114), 112, 108, 107, "A Disk Folder is Down" + SUPPORT),
    208: ObjectTrap("tsVolume", (115, 116, 117), 118, 116, 115, "A Volume is Down" + SUPPORT),
    209: ObjectTrap("tsServer", (120, 121, 122, 123, 124), 125, 121, 120, "A Server is Down" + SUPPORT),
    210: ObjectTrap("tsControllerCacheCard", (127, 128, 129, 130, 131), None, 128, 127, "Cache is Down" + SUPPORT),
    211: ObjectTrap("Tessera", (138,), None, 138, 133, "Ports are Not Balanaced" + SUPPORT),
    212: ObjectTrap("tsUps", (144, 145, 146, 147, 148), 149, 145, 144,
                    "A UPS is Down: Check UPS status and connectivity or contact Vorn Support Services.")}

# object of the array; columns of status and name; advice when it is down.
Component = namedtuple("Component", "kind status name advice")
COMPONENTS = {
    (204, 1): Component("tsControllerFanSensor", 48, 49, "Controller Fan is Down: Schedule fan replacement."),
    (204, 2): Component("tsControllerPowerSupply", 60, 61,
                        "Controller Power Supply is Down: Schedule power supply replacement."),
    (204, 3): Component("tsControllerTemperatureSensor", 75, 76,
                        "Controller Temperature Sensor is Down" + SUPPORT),
    (204, 4): Component("tsControllerVoltageSensor", 64, 65, "Controller Voltage is Down" + SUPPORT),
    (206, 1): Component("tsEnclosureCoolingFanSensor", 86, 87, "Enclosure Fan is Down" + SUPPORT),
    (206, 2): Component("tsEnclosurePowerSupply", 91, 92,
                        "Enclosure Power Supply is Down: Schedule replacement."),
    (206, 3): Component("tsEnclosureTemperatureSensor", 99, 100,
                        "Enclosure Temperature Sensor is Down" + SUPPORT),
    (206, 5): Component("tsEnclosureIoModule", 95, 96, "Enclosure I/O Module is Down" + SUPPORT),
    (206, 6): Component("tsEnclosureAudibleAlarm", 104, 105, "Enclosure Audible Alarm is Down" + SUPPORT)}
FAN_INDEX = 58
