#pragma once

#include "apiMgmt/common/threadpool/mutexWrapper.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/netSnmpHeaders.h"

/**
 * The window in which requests are served: one agent tick. A PDU may take several handler calls, one per
 * registration and binding. Pacing, permission and failures count PDUs, so calls with the same agent session
 * count as one. Main thread only.
 */

/**
 * Gate of SNMP service: held by the main thread except during agent_check_and_process. The request handler
 * only tries to lock it, so a request that is delivered at any other time is rejected without waiting.
 */
extern MUTEXWrapper& mib_mutex;

/** PDUs that may still be served in this tick. */
extern int permission_to_process_pdu;

/** Consecutive failed PDUs. The fifth closes the window for the rest of the tick. */
extern int pdu_failures;

/** Opens the window for one agent tick. Returns whether at least one packet was handled. */
bool process_agent_events();

/** Called by process_agent_events at the beginning and the end of a tick: grant and revoke permission. */
void begin_agent_tick();
void end_agent_tick();

/** Returns whether the call's PDU may be served in this tick. */
bool admit_pdu(const netsnmp_agent_request_info* info);

/** Record the outcome of one handler call. A PDU with a failed binding counts as failed. */
void count_success();
void count_failure();

/** Records that a binding has reached the end of the view. */
void note_end_of_view(const netsnmp_variable_list* binding);

/**
 * Returns whether the previous response, or the same binding in another registration, was the end of the
 * view. The end of another binding of the same PDU does not count.
 */
bool follows_end_of_view(const netsnmp_variable_list* binding);
