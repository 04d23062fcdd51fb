#pragma once

#include "apiMgmt/snmpSubagent/snmpSubagentUtil/netSnmpHeaders.h"

/** The request being served, and what its handler answers. Main thread only. */

/** Set by central_oid_handler for the time of one call. */
extern netsnmp_agent_request_info* reqinfo;
extern netsnmp_request_info* requests;
extern netsnmp_variable_list* current_requestvb;

/** What the handler returns when it fails: an SNMP error status. */
extern int snmpErr;

/** The last GETNEXT ran off the end of the store; cleared by the next delivered variable. */
extern bool last_resp_was_endofmibview;

/** netsnmp_set_request_error on the request being served. */
void set_current_request_error(int error);
