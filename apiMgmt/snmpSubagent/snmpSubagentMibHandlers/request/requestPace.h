#pragma once

#include <cstddef>
#include <cstdint>

#include "apiMgmt/snmpSubagent/snmpSubagentUtil/netSnmpHeaders.h"

/**
 * The pace of SNMP service: about 500 PDUs per second, after a burst of as many. Normally a PDU that exceeds
 * the pace waits. Managers that do not wait for responses would fill the queues in front of the daemon and
 * the memory of snmpd, which restarts the service: while such an overload lasts, a PDU that exceeds the pace
 * is rejected immediately instead. A small one for whose first name nobody has just asked is served, so that
 * other managers still are. Main thread only.
 */

/** Virtual clock of the pacing, in milliseconds. */
extern int64_t next_pdu_slot_ms;

/** Holds the rate of PDUs at about 500 a second, after a burst of about as many: sleeps if the next one
 * exceeds it. */
void pace_pdu_processing();

/** A request PDU of this many octets has arrived; they are served in the order in which they arrive. */
void note_request_arrived(size_t octets);

/** No request waits. */
void note_no_request_waits();

/** The oldest request is about to be served: sleeps if it exceeds the pace. Returns whether to serve it;
   false in an overload. */
bool keep_request_pace(const netsnmp_variable_list* first_binding);
