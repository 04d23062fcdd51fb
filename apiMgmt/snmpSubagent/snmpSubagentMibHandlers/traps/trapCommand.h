#pragma once

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapQueue.h"

/**
 * Turns a trap command into its notification: re-reads the object's state, writes the trap variables, and
 * sends the notification unless it is redundant. Truncates the alert string in place. If `recheck` is set,
 * only re-reads the state. Returns 0 for a redundant notification, 1 after logging why the command is
 * rejected, else the result of Send_a_Trap. Main thread only.
 */
int processSendTrapCmd(TrapToSend& trap, bool recheck);

/** Queues the notification of the daemon's start if notifications are enabled. */
void send_coldstart();

/** Sends the test notification. */
void send_test_trap();
