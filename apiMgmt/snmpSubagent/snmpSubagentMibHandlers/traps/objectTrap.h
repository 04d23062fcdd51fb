#pragma once

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapQueue.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/trapCatalogue.h"

/**
 * The commands that are about an object of a table. Results as those of processSendTrapCmd. Main thread only.
 */

/** A whole object: disk, controller, enclosure, disk folder, volume, server, cache card, array, UPS. */
int send_object_trap(const notification_definition& notification, const TrapToSend& trap, bool recheck);

/** A component of a controller or an enclosure, which must itself be Up. */
int send_component_trap(const notification_definition& notification, const TrapToSend& trap, bool recheck);

/** A device that a SCSI initiator sees; no memory is kept of it. */
int send_device_trap(const TrapToSend& trap);
