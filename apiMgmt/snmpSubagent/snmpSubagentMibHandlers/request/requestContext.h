#pragma once

#include "apiMgmt/snmpSubagent/snmpSubagentUtil/netSnmpHeaders.h"

/** The request being served and the state of its response. Main thread only. */

/** Set by central_oid_handler, for the duration of one call. */
inline netsnmp_agent_request_info* reqinfo = nullptr;
inline netsnmp_request_info* requests = nullptr;
inline netsnmp_variable_list* current_requestvb = nullptr;

/** The SNMP error status that the handler returns if it fails. */
inline int snmpErr = SNMP_ERR_NOERROR;

/** Whether the last GETNEXT reached the end of the store; cleared by the next delivered variable. */
inline bool last_resp_was_endofmibview = false;

/** Sets an error on the request being served. */
inline void set_current_request_error(int error) {
    netsnmp_set_request_error(reqinfo, requests, error);
}
