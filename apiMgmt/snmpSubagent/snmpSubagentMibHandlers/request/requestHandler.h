#pragma once

#include <atomic>
#include <cstdint>

#include "apiMgmt/snmpSubagent/snmpSubagentUtil/netSnmpHeaders.h"

/**
 * The handler of all registrations: serves GET and GETNEXT from the store, executes the phases of a SET, and
 * translates names in the old enterprise number. Runs on the main thread, inside the window that
 * process_agent_events opens.
 */

/** Set when a management message requests handleTempTest. */
extern std::atomic<bool> tempTest_requested;

/** The operations of the request handler. Has no data; one instance is created at start-up. */
class SnmpSubagentMibHandlers {
  public:
    /** Serves the bindings of one request. Returns 0 or an SNMP error status. */
    static int central_oid_handler(netsnmp_mib_handler* handler, netsnmp_handler_registration* reginfo,
                                   netsnmp_agent_request_info* info, netsnmp_request_info* request);

    /** Copies the cached value to `current_requestvb`. Returns 0 or 1. */
    static int deliver_cached_info(int32_t var_index);

    /** Checks the SET of `current_requestvb`. Returns the variable's index, or -1 after setting the error. */
    static int32_t process_reserve1();

    /** Stores the new value and runs the column's set_fn. Returns 0, or non-zero on failure. */
    static int process_commitset(int32_t var_index);

    /** See requestPace.h. */
    static void pace_pdu_processing();

    /** Turns requests for reduced objects on or off. Returns 1. */
    static int handleTempTest();
};
