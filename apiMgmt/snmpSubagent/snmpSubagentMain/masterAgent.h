#pragma once

/**
 * Supervision of the Net-SNMP master agent: starts `snmpd`, measures it, kills it, and proves at run time
 * that the chain from an SNMP client through it to this daemon's handler answers. Main thread only.
 */

/** Process id of the running snmpd; -1 while it is not known. */
extern int snmpd_pid;

/** Starts snmpd and learns its process id. 0 or 1. */
int start_snmpd();

/** The process id in a pid file, waiting a little for it; -1 when there is none. */
int read_pid_file(const char* path);

/** Kills all processes named snmpd: signal 6 first, signal 9 soon after. */
void kill_snmpd();

/** False only when ps shows a sane resident size of at most 50000 kilobytes. */
bool snmpd_using_too_much_mem();

/** Fires one GET of the self-test variable at snmpd and does not wait for it. 0 = started, 1 = failed. */
int exec_snmpget();

/** Judges the GET that the call before fired, and fires the next. 0 = good, 1 = failed. */
int check_snmpget();

/** 0 when the master agent answers an AgentX ping. */
int ping_agentx_master();
