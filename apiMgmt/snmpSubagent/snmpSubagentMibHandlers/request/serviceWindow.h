#pragma once

#include "apiMgmt/common/threadpool/mutexWrapper.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/netSnmpHeaders.h"

/**
 * The window in which requests are served: one agent tick. One PDU may take several handler calls in a tick,
 * one for each registration and binding; pacing, permission and failures count PDUs, so the calls of one PDU
 * are recognised by its agent session. Main thread only.
 */

/**
 * Gate of SNMP service: held by the main thread at all times except during agent_check_and_process.
 * The request handler tries it, so a request delivered at any other moment is refused and does not wait.
 */
extern MUTEXWrapper& mib_mutex;

/** PDUs that may still be served in this agent tick. */
extern int permission_to_process_pdu;

/** Consecutive failed PDUs. The fifth closes the window for the rest of the tick. */
extern int pdu_failures;

/** Opens the window once, for one agent tick. True when at least one packet was handled. */
bool process_agent_events();

/** What process_agent_events does around a tick: open and close the permission. */
void begin_agent_tick();
void end_agent_tick();

/** Whether the call belongs to a PDU that may be served in this tick. */
bool admit_pdu(const netsnmp_agent_request_info* info);

/** Of one handler call. A PDU with one failed binding is a failed PDU, whatever its other bindings gave. */
void count_success();
void count_failure();

/** A binding's view has ended. */
void note_end_of_view(const netsnmp_variable_list* binding);

/** Whether an answer before this one, or the same binding in another registration, was the end of the
    view. That another binding of the same PDU has just ended does not count. */
bool follows_end_of_view(const netsnmp_variable_list* binding);
