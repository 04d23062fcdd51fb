#pragma once

#include <net-snmp/net-snmp-config.h>
// oid.h needs the configuration above it.
#include <net-snmp/library/oid.h>

#include <cstddef>
#include <string>

/** Copies of OIDs, and OIDs as strings for log lines. */

/** Copies the sub-identifiers. A length above 19 is logged and copies nothing. */
void copy_oid(oid* destination, const oid* source, size_t length);

/** The OID as text for log lines, each sub-identifier followed by a dot. Result: the text's length. */
int get_oid_str(const oid* name, size_t name_length, char* output, size_t output_size);

/** Appends the OID to a text, each sub-identifier followed by a dot. */
void oid_to_string(std::string& output, const oid* name, size_t name_length);

/** The same as a text of its own. */
std::string oid_text(const oid* name, size_t name_length);
