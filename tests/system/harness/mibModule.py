"""The MIB modules of the build, for Net-SNMP's tools."""

import os

from . import machine

NAME = "VORN-LUMIVANT-TESSERA-MIB"
OLD_NAME = "VORN-LUMIVANT-TESSERA-OLD-MIB"
FOLDERS = f"{os.path.join(machine.REPOSITORY, 'mib', 'standard')}:{os.path.join(machine.BUILD, 'mib')}"


def options(name=NAME):
    """Returns the options that make a tool read this module and those that it imports."""
    return ["-M", FOLDERS, "-m", name]
