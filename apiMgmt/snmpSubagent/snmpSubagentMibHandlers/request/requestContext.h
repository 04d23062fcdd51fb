#pragma once

#include "apiMgmt/snmpSubagent/snmpSubagentUtil/netSnmpHeaders.h"

/** The request being served, and what its handler answers. Main thread only. */

/** Set by central_oid_handler for the time of one call. */
inline netsnmp_agent_request_info* reqinfo = nullptr;
inline netsnmp_request_info* requests = nullptr;
inline netsnmp_variable_list* current_requestvb = nullptr;

/** What the handler returns when it fails: an SNMP error status. */
inline int snmpErr = SNMP_ERR_NOERROR;

/** The last GETNEXT ran off the end of the store; cleared by the next delivered variable. */
inline bool last_resp_was_endofmibview = false;

/** netsnmp_set_request_error on the request being served. */
inline void set_current_request_error(int error) {
    netsnmp_set_request_error(reqinfo, requests, error);
}
