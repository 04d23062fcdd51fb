#pragma once

#include <string>

/** Settings of the daemon, read once at start. A change takes effect with the next start. */

/** Communities of the self-test; who may read or write is the master agent's business. */
extern std::string conf_rwcommunity;
extern std::string conf_rocommunity;

/** Notifications: whether any leaves, where to, and their version (1 trap, 2 version 2c trap, 3 inform). */
extern bool conf_trapsEnabled;
extern std::string conf_trapDest;
extern int conf_trapPort;
extern std::string conf_trapCommun;
extern int conf_trapVer;

/** Stored and used by nothing. */
extern int conf_controllerIdLeader;

/** The array's identity in InstanceId values. */
extern int conf_controllerIdThis;

/** Which row of the controller table this controller is: 1 or 2; 0 when it is not known. */
extern int conf_controllerIndexThis;

/** One test notification once the API manager answers; clears itself. */
extern bool sendTestTrap;

/**
 * Reads /etc/snmpSubagent.conf. 0 when it was read; 1, everything left as the process started, when it is
 * missing, unreadable or empty. The first place where a key stands counts, be it in a longer word or in a
 * comment; the value goes to the end of the line, trailing blanks included; a last line without newline
 * and what lies beyond 499 bytes do not count.
 */
int read_snmpSubagent_conf();
