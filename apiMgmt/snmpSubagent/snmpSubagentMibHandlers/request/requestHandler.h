#pragma once

#include <atomic>
#include <cstdint>

#include "apiMgmt/snmpSubagent/snmpSubagentUtil/netSnmpHeaders.h"

/**
 * The one handler of all registrations: answers GET and GETNEXT from the store, carries out the phases of
 * a SET, and translates names in the product family's old enterprise number. Runs on the main thread,
 * inside the window that process_agent_events opens.
 */

/** A management message asks for handleTempTest. */
extern std::atomic<bool> tempTest_requested;

/** Carries the operations of the request handler; main creates one. It has no data. */
class SnmpSubagentMibHandlers {
  public:
    /** A Net-SNMP handler for the bindings of one registration. Result 0 or an SNMP error status. */
    static int central_oid_handler(netsnmp_mib_handler* handler, netsnmp_handler_registration* reginfo,
                                   netsnmp_agent_request_info* info, netsnmp_request_info* request);

    /** Puts the cached value into `current_requestvb`. Result 0 or 1. */
    static int deliver_cached_info(int32_t var_index);

    /** Checks the SET of `current_requestvb`: the variable's index, or -1 after the error was set. */
    static int32_t process_reserve1();

    /** Stores the new value and runs the column's set_fn. Result 0 or non-zero. */
    static int process_commitset(int32_t var_index);

    /** Holds the rate of PDUs at about 500 a second, after a burst of about as many. */
    static void pace_pdu_processing();

    /** Switches the requests for reduced objects on or off. Result 1. */
    static int handleTempTest();
};
