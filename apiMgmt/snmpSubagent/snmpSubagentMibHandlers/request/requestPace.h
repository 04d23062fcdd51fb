#pragma once

#include <cstddef>
#include <cstdint>

#include "apiMgmt/snmpSubagent/snmpSubagentUtil/netSnmpHeaders.h"

/**
 * Pacing of SNMP service: about 500 PDUs per second, after a burst of as many. Normally a PDU that exceeds
 * the pace waits. But managers that do not wait for responses would fill the daemon's queues and snmpd's
 * memory until the service restarts. During such an overload, a PDU that exceeds the pace is rejected
 * immediately. A small one whose first name was not requested recently is still served, so that other
 * managers get responses. Main thread only.
 */

/** Virtual clock of pacing, in milliseconds. */
extern int64_t next_pdu_slot_ms;

/** Advances the virtual clock by one PDU, and sleeps if that exceeds the pace. */
void pace_pdu_processing();

/** Records the arrival of a request PDU. PDUs are served in the order of arrival. */
void note_request_arrived(size_t octets);

/** Records that no request is waiting. */
void note_no_request_waits();

/**
 * Removes the oldest waiting request and sleeps if it exceeds the pace. Returns false if it must be rejected
 * because of an overload.
 */
bool keep_request_pace(const netsnmp_variable_list* first_binding);
