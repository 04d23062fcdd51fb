#pragma once

#include <string>

#include "fuzz/lib/fuzzInput.h"
#include "tests/unit/core/fakes/snmpPdu.h"

/** SNMP requests derived from a fuzzer's bytes, and a simple model of the expected results. */

/** Clears the store and caches some instances. */
void fill_store(FuzzInput& input);

/** Returns a name in or around the MIB, in the current or the old form. `last` continues a walk. */
std::string any_name(FuzzInput& input, const std::string& last);

/** Returns the name of a writable variable. Its row usually exists afterwards. */
std::string any_writable(FuzzInput& input);

/** Returns a value for a SET, usually one that some writable variable accepts. */
std::string any_text(FuzzInput& input);

/** Serves the PDU in that mode. Ends the process if the result, a value, the store or the queue of trap
   commands differs from the model. Returns the result. */
int serve_and_check(snmp_pdu_of_test& pdu, int mode);

/** Serves the phases of a SET in order, as far as they succeed. */
void set_and_check(snmp_pdu_of_test& pdu);
