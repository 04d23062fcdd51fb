#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/requestContext.h"

netsnmp_agent_request_info* reqinfo = nullptr;
netsnmp_request_info* requests = nullptr;
netsnmp_variable_list* current_requestvb = nullptr;
int snmpErr = SNMP_ERR_NOERROR;
bool last_resp_was_endofmibview = false;

void set_current_request_error(int error) {
    netsnmp_set_request_error(reqinfo, requests, error);
}
