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

// ---- shared by them ----

/** The row (from 1) that trapArgA names; 0 after a logged refusal. */
int32_t find_object_row(const object_rule& object, int32_t trapArgA);

/** Refreshes the table if that is due now, and lets the notification show the object. Returns its row (from
    1), which the refresh may have changed, or 0 after logging that there is no such object. */
int32_t bring_object_up_to_date(const object_rule& object, int32_t row, int32_t trapArgA);

/** The row (from 1) of the enclosure of a disk, from the disk's name "ENCLOSURE-SLOT": no value when the name
    does not tell, 0 when there is no such enclosure, which is logged. */
struct disk_enclosure {
    bool is_named;
    int32_t row;
};
disk_enclosure find_enclosure_of_disk(const std::string& disk_name);
