#pragma once

#include <cstddef>
#include <cstdint>

#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"

/**
 * From a requested OID to a variable's index, exactly (GET, SET) and to the next instance (GETNEXT). The
 * column is found by halving the 194 column OIDs, which are in order and none of which is a prefix of
 * another; the rest is arithmetic, since the order of `vars` is the order of the OIDs. Main thread only.
 */

/** The variable that the last GET or GETNEXT delivered, in the form used inside the handler. A walk asks
    for the OID that it was just given, and so costs no search. Length 0 until the first delivery. */
extern oid last_oid[MAX_handled_oidlen + 1];
extern size_t last_oid_len;
extern int32_t last_var_index;

/** Exact lookup of a cached instance: its index, or -1 with a debug line that says why. */
int32_t get_index_of_oid(const oid* name, size_t name_length);

/** The first cached instance behind a name; -1 when there is none. Knows nothing of the last OID. */
int32_t find_next_index(const oid* name, size_t name_length);

/** Whether the name is the last delivered one. */
bool is_last_oid(const oid* name, size_t name_length);

/** Exact lookup of `current_requestvb`, by way of the last OID. -1 sets `snmpErr` to noSuchName. */
int32_t get_var_index_from_reginfo();

/** Next lookup of `current_requestvb`. On -1 the request carries the end-of-view error. */
int32_t get_next_oid();
