#pragma once

#include "apiMgmt/snmpSubagent/snmpSubagentUtil/netSnmpHeaders.h"

/**
 * Registrations with the agent library: the subtrees of the current and the old enterprise number, and one
 * instance each for sysContact, sysName and sysLocation. Main thread only.
 */

/** Registers both enterprise subtrees. Returns 0, or 1 on failure or if they are already registered. */
int register_subtree();

/** Registers one scalar instance and stores its handle. Returns 0 or 1. */
int register_a_sysvar(int col_id, netsnmp_handler_registration** handle_slot);

/** Registers sysContact, sysName and sysLocation, up to the first failure. Returns 0 or 1. */
int register_all_sysvars();

/** Unregisters everything, up to the first failure. Returns 0 or 1. */
int unregister_all_oids();

/**
 * The handler that Net-SNMP calls with the requests of one registration. Passes each request separately to
 * central_oid_handler. Returns 0 or an SNMP error status.
 */
int serve_requests(netsnmp_mib_handler* handler, netsnmp_handler_registration* reginfo,
                   netsnmp_agent_request_info* info, netsnmp_request_info* first);
