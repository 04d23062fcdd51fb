#pragma once

#include <net-snmp/net-snmp-config.h>
// oid.h requires net-snmp-config.h.
#include <net-snmp/library/oid.h>

#include <cstddef>
#include <string>

/** Copying and formatting of OIDs. */

/** Copies the sub-identifiers. Logs a length above 19 and copies nothing. */
void copy_oid(oid* destination, const oid* source, size_t length);

/** Writes the OID for log lines, with a dot after each sub-identifier. Returns the length of the string. */
int get_oid_str(const oid* name, size_t name_length, char* output, size_t output_size);

/** Appends the OID to a string, with a dot after each sub-identifier. */
void oid_to_string(std::string& output, const oid* name, size_t name_length);

/** Returns the OID in that format. */
std::string oid_text(const oid* name, size_t name_length);
