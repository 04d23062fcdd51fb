"""All kinds of fault. Each module brings a tuple of them."""

from . import arrayFaults, machineFaults, processFaults, senderFaults

ALL = arrayFaults.KINDS + processFaults.KINDS + senderFaults.KINDS + machineFaults.KINDS
