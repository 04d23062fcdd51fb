#pragma once

#include <cstddef>
#include <cstdint>

#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"

/**
 * Translates a requested OID into a variable's index: exactly (GET, SET) or to the next instance (GETNEXT).
 * The column is found by binary search in the 194 column OIDs, which are sorted and none of which is a prefix
 * of another. The rest is arithmetic, because `vars` is in OID order. Main thread only.
 */

/**
 * The variable that was last delivered, with its name in the current enterprise number. A walk continues from
 * the name that it was just given, so it needs no search. Length 0 until the first delivery.
 */
extern oid last_oid[MAX_handled_oidlen + 1];
extern size_t last_oid_len;
extern int32_t last_var_index;

/** Returns the index of a cached instance, or -1 after a debug line with the reason. */
int32_t get_index_of_oid(const oid* name, size_t name_length);

/** Returns the first cached instance after a name; -1 if there is none. Does not use last_oid. */
int32_t find_next_index(const oid* name, size_t name_length);

/** Returns whether the name is that of the last delivered variable. */
bool is_last_oid(const oid* name, size_t name_length);

/** Looks up `current_requestvb` exactly, trying last_oid first. On -1, `snmpErr` is noSuchName. */
int32_t get_var_index_from_reginfo();

/** Looks up the instance after `current_requestvb`. On -1, the request carries the end-of-view error. */
int32_t get_next_oid();
