#pragma once

#include <string>
#include <vector>

/** The state that snmpd keeps between starts, and its environment. */

/**
 * Writes `snmpd.conf` in the directory, with the ID of the SNMPv3 engine, which is chosen once, and the
 * incremented boot count. Other lines of an existing file are lost. The directory must belong to this
 * process's user and be writable by nobody else, because snmpd reads the file as root. Returns false, after
 * logging the error, if the file could not be written.
 */
bool keep_snmp_engine(const std::string& folder);

/**
 * Returns this process's environment with the directories of snmpd's settings and state. `folder` is the
 * directory that was passed to keep_snmp_engine, or empty.
 */
std::vector<std::string> snmpd_environment(const std::string& folder);
