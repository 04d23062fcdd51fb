#pragma once

#include <cstdint>

#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/trapCatalogue.h"

/**
 * Notifications that a manager asks for by a SET: the handlers of the ForceTrap columns compose a trap
 * command for their row and queue it as if the array had sent it. Main thread only.
 */

/** Composes the command of the row of the written variable into forceTrapCommand and queues it. 0, or 1 when
   the row has no object to report. */
int force_notification(const force_definition& force, int32_t var_index);

/** Queues the command in forceTrapCommand. Result as that of ParseTrapCommand. */
int ExecuteForceTrap();

/** The set_fn of forceTrapCommand: executes the command in the written variable. */
int forceTrapCommand_set(int32_t var_index);
