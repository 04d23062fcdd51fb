#pragma once

#include <atomic>
#include <cstdint>

#include "apiMgmt/snmpSubagent/snmpSubagentUtil/netSnmpHeaders.h"

/**
 * The one handler of all registrations: answers GET and GETNEXT from the store, carries out the phases of
 * a SET, and translates names in the product family's old enterprise number. Runs on the main thread,
 * inside the window that process_agent_events opens.
 */

/** The request being served. Set by central_oid_handler for the time of one call. */
extern netsnmp_agent_request_info* reqinfo;
extern netsnmp_request_info* requests;
extern netsnmp_variable_list* current_requestvb;

/** What the handler returns when it fails: an SNMP error status. */
extern int snmpErr;

/** The last GETNEXT ran off the end of the store; cleared by the next delivered variable. */
extern bool last_resp_was_endofmibview;

/** PDUs that may still be served in this agent tick. */
extern int permission_to_process_pdu;

/** Consecutive failed PDUs. The fifth closes the window for the rest of the tick. */
extern int pdu_failures;

/** Every GetList and Get asks for reduced objects while this is set. Written by the main thread only. */
extern std::atomic<bool> liteObjEnabled;

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

/** netsnmp_set_request_error on the request being served. */
void set_current_request_error(int error);
