#pragma once

#include "apiMgmt/snmpSubagent/snmpSubagentUtil/netSnmpHeaders.h"

/**
 * Registrations with the agent library: the whole enterprise number, the product family's old one, and the
 * scalars sysContact, sysName and sysLocation, each as one instance. Main thread only.
 */

/** Registers both enterprise subtrees. 0, or 1 on failure and when they are registered already. */
int register_subtree();

/** Registers one scalar instance and stores its handle. 0 or 1. */
int register_a_sysvar(int col_id, netsnmp_handler_registration** handle_slot);

/** Registers columns 0, 1 and 2, up to the first failure. */
int register_all_sysvars();

/** Takes all registrations back, up to the first failure. 0 or 1. */
int unregister_all_oids();

/**
 * The function that Net-SNMP calls for all of them, with the requests of one registration. Serves each
 * request by itself through central_oid_handler. Result 0 or an SNMP error status.
 */
int serve_requests(netsnmp_mib_handler* handler, netsnmp_handler_registration* reginfo,
                   netsnmp_agent_request_info* info, netsnmp_request_info* first);
