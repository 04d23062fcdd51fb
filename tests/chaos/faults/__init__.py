"""All kinds of fault; each module defines some of them."""

from . import arrayFaults, machineFaults, processFaults, senderFaults

ALL = arrayFaults.KINDS + processFaults.KINDS + senderFaults.KINDS + machineFaults.KINDS
