#pragma once

#include <string>
#include <vector>

/** What snmpd needs to know from one start to the next, and the environment that it starts with. */

/**
 * Writes FOLDER/snmpd.conf with the name of the SNMPv3 engine, which is chosen once, and the number of this
 * start. Nothing else in an older file survives. The folder must belong to this process's user and be
 * writable by no other: snmpd reads it as root. False, with a log line, when the file could not be written.
 */
bool keep_snmp_engine(const std::string& folder);

/** This process's environment with the directories of snmpd's settings and state. folder: as above, or empty.
 */
std::vector<std::string> snmpd_environment(const std::string& folder);
