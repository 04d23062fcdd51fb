#pragma once

#include <cstdint>

#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/trapCatalogue.h"

/**
 * Notifications that a manager requests with a SET. The handlers of the ForceTrap columns compose a trap
 * command for the written row and queue it as if the array application had sent it. Main thread only.
 */

/**
 * Composes the command for the row of the written variable in forceTrapCommand and queues it. Returns 0, or 1
 * if the row has no object to report.
 */
int force_notification(const force_definition& force, int32_t var_index);

/** Queues the command in forceTrapCommand. Returns the result of ParseTrapCommand. */
int ExecuteForceTrap();

/** The set_fn of forceTrapCommand: queues the command in the written variable. */
int forceTrapCommand_set(int32_t var_index);
