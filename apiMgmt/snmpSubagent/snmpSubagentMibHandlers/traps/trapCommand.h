#pragma once

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapQueue.h"

/**
 * From a trap command to its notification: reads the object's state anew, writes the trap variables, asks
 * whether the notification would be redundant, and sends it. The alert string is shortened in place. With
 * `recheck` set the state is only read anew. 0 for a redundant notification, 1 for a refused command, which
 * is logged, else the result of Send_a_Trap. Main thread only.
 */
int processSendTrapCmd(TrapToSend& trap, bool recheck);

/** Queues the notification that the daemon has started, when notifications are enabled. */
void send_coldstart();

/** Sends the test notification. */
void send_test_trap();
