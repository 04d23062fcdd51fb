#pragma once

/**
 * Supervision of the Net-SNMP master agent: starts `snmpd`, checks its memory, kills it, and tests the chain
 * from an SNMP client through `snmpd` to the daemon's request handler. Main thread only.
 */

/** Process ID of the running snmpd; -1 while unknown. */
extern int snmpd_pid;

/** Starts snmpd and reads its pid file. Returns 0, or 1 after logging the error. */
int start_snmpd();

/**
 * Returns the process ID in a pid file, after a short wait if the file is missing or empty; -1 on failure.
 */
int read_pid_file(const char* path);

/** Kills all processes named snmpd: sends signal 6, and signal 9 shortly afterwards. */
void kill_snmpd();

/** Returns false only if ps reports a resident size of 1 to 50000 kilobytes. */
bool snmpd_using_too_much_mem();

/**
 * Sends a GET of the self-test variable to snmpd without waiting for the response. Returns 0, or 1 if it
 * could not be started.
 */
int exec_snmpget();

/** Returns 0 if the previous self-test GET has arrived and the next one could be started, else 1. */
int check_snmpget();

/** Returns 0 if the master agent responds to an AgentX ping, else 1. */
int ping_agentx_master();
