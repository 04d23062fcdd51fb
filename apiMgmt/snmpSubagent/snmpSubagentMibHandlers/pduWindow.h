#pragma once

#include "apiMgmt/snmpSubagent/snmpSubagentUtil/netSnmpHeaders.h"

/**
 * The window in which requests are served, one agent tick, and what it remembers of the PDU in hand. One
 * PDU may take several handler calls in a tick, one for each registration and binding; pacing, permission
 * and failures count PDUs, so the calls of one PDU are recognised by its agent session.
 */

/** Called by process_agent_events around each tick: opens and closes the permission. */
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
