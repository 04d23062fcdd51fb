#pragma once

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapQueue.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/trapCatalogue.h"

/** Trap commands about an object of a table. Results are those of processSendTrapCmd. Main thread only. */

/** An object: disk, controller, enclosure, disk folder, volume, server, cache card, array, UPS. */
int send_object_trap(const notification_definition& notification, const TrapToSend& trap, bool recheck);

/** A component of a controller or enclosure, which must itself be Up. */
int send_component_trap(const notification_definition& notification, const TrapToSend& trap, bool recheck);

/** A device that a SCSI initiator sees. No record of it is kept. */
int send_device_trap(const TrapToSend& trap);
