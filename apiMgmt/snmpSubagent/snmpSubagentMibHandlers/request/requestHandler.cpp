#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/requestHandler.h"

#include <algorithm>
#include <string>

#include "apiMgmt/snmpSubagent/snmpSubagentComm/snmpSubagentComm.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/apiAccess.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/enterpriseNumber.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/oidLookup.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/requestContext.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/requestPace.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/serviceWindow.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/setRequest.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/oidFormatter.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

std::atomic<bool> tempTest_requested{false};

namespace {

constexpr size_t kShortestName = 6;

std::string current_name() {
    return oid_text(current_requestvb->name, current_requestvb->name_length);
}

int current_length() {
    return static_cast<int>(current_requestvb->name_length);
}

void log_mode(const char* mode) {
    SUBAGENT_LOG(debug,
                 "reqinfo->mode: %s: current_requestvb->name_length: %d, current_requestvb->name: %s\n", mode,
                 current_length(), current_name().c_str());
}

int serve_get() {
    if (last_var_index != COLID_selfTestVersion)
        log_mode("MODE_GET");
    const int32_t var_index = get_var_index_from_reginfo();
    if (var_index < 0 || SnmpSubagentMibHandlers::deliver_cached_info(var_index) != 0)
        return 1;
    last_resp_was_endofmibview = false;
    return 0;
}

void name_current_binding(int32_t var_index) {
    const column_record& column = cols[vars[var_index].col_id];
    oid name[MAX_handled_oidlen + 1];
    size_t name_length = column.oid_len;
    std::copy_n(column.oid_ptr, name_length, name);
    append_seq_nums(name, &name_length, var_index);
    snmp_set_var_objid(current_requestvb, name, name_length);
}

int serve_getnext(bool enters_old_subtree) {
    // A walk that has just ended must not start again in the old enterprise number. A longer name belongs to
    // a walk in progress, possibly another manager's, which continues.
    if (enters_old_subtree && follows_end_of_view(current_requestvb)) {
        SUBAGENT_LOG(debug,
                     "reqinfo->mode: MODE_GETNEXT: got rcvd_req_with_old_enterprise_num and "
                     "last_resp_was_endofmibview\n");
        set_current_request_error(SNMP_ENDOFMIBVIEW);
        snmpErr = SNMP_ERR_NOERROR;
        return 1;
    }
    log_mode("MODE_GETNEXT");
    const int32_t var_index = get_next_oid();
    if (var_index < 0) {
        note_end_of_view(current_requestvb);
        return 1;
    }
    name_current_binding(var_index);
    log_mode("MODE_GETNEXT: after call to snmp_set_var_objid");
    const int result = SnmpSubagentMibHandlers::deliver_cached_info(var_index);
    if (result == 0)
        last_resp_was_endofmibview = false;
    return result;
}

int serve_commit() {
    log_mode("MODE_SET_COMMIT");
    const int32_t var_index = SnmpSubagentMibHandlers::process_reserve1();
    return var_index < 0 ? 1 : SnmpSubagentMibHandlers::process_commitset(var_index);
}

int serve_mode(bool enters_old_subtree) {
    switch (reqinfo->mode) {
        case MODE_GET:
            return serve_get();
        case MODE_GETNEXT:
            return serve_getnext(enters_old_subtree);
        case MODE_GETBULK:
            SUBAGENT_LOG(warning, "Error: Recieved a GETBULK request from master agent\n");
            return 1;
        case MODE_SET_RESERVE1:
            log_mode("MODE_SET_RESERVE1");
            return SnmpSubagentMibHandlers::process_reserve1() < 0 ? 1 : 0;
        case MODE_SET_RESERVE2:
        case MODE_SET_ACTION:
            return 0;
        case MODE_SET_COMMIT:
            return serve_commit();
        case MODE_SET_FREE:
            SUBAGENT_LOG(debug, "reqinfo->mode: MODE_SET_FREE\n");
            return 0;
        case MODE_SET_UNDO:
            SUBAGENT_LOG(debug, "reqinfo->mode: MODE_SET_UNDO\n");
            return 0;
        default:
            SUBAGENT_LOG(warning, "UNKNOWN MODE: reqinfo->mode: %d\n", reqinfo->mode);
            return 1;
    }
}

int serve_binding() {
    if (current_requestvb->name_length < kShortestName) {
        SUBAGENT_LOG(
            debug,
            "request oid is too short: current_requestvb->name_length: %d, current_requestvb->name: %s\n",
            current_length(), current_name().c_str());
        return 1;
    }
    const bool is_old_form = has_old_enterprise_number(current_requestvb);
    const bool enters_old_subtree = is_old_enterprise_number(current_requestvb);
    if (is_old_form && !expand_old_enterprise_number(current_requestvb))
        return 1;
    const int result = serve_mode(enters_old_subtree);
    if (is_old_form)
        shrink_to_old_enterprise_number(current_requestvb);
    return result;
}

// Serves the bindings in order, up to the first failure.
int serve_bindings() {
    int result = 1;
    while (current_requestvb != nullptr) {
        result = serve_binding();
        if (result != 0)
            break;
        current_requestvb = current_requestvb->next_variable;
        if (current_requestvb != nullptr)
            SUBAGENT_LOG(debug, "another var in same request:\n");
    }
    return result;
}

void log_failure(int retVal) {
    if (current_requestvb != nullptr)
        SUBAGENT_LOG(debug, "could not process request: oid: %s, retVal: %d, snmpErr: %d\n",
                     current_name().c_str(), retVal, snmpErr);
    else
        SUBAGENT_LOG(debug, "could not process request: no current_requestvb: retVal: %d, snmpErr: %d\n",
                     retVal, snmpErr);
}

int serve_admitted(netsnmp_agent_request_info* info, netsnmp_request_info* request) {
    snmpErr = SNMP_ERR_GENERR;
    snmpSubagentComm->set_agentx_state(true);
    reqinfo = info;
    requests = request;
    current_requestvb = request->requestvb;
    const int retVal = serve_bindings();
    if (retVal == 0) {
        count_success();
        snmpErr = SNMP_ERR_NOERROR;
        return SNMP_ERR_NOERROR;
    }
    count_failure();
    log_failure(retVal);
    return snmpErr;
}

}  // namespace

int SnmpSubagentMibHandlers::central_oid_handler(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                                 netsnmp_agent_request_info* info,
                                                 netsnmp_request_info* request) {
    if (mib_mutex.TryLock() != 0) {
        SUBAGENT_LOG(debug, "Can't get lock to process PDU(s): reqinfo->mode: %d\n", info->mode);
        pdu_failures = 0;
        return SNMP_ERR_GENERR;
    }
    int result = SNMP_ERR_GENERR;
    if (admit_pdu(info)) {
        result = serve_admitted(info, request);
    } else {
        SUBAGENT_LOG(debug, "NO permission to process: reqinfo->mode: %d\n", info->mode);
        pdu_failures = 0;
    }
    mib_mutex.Unlock();
    return result;
}

int SnmpSubagentMibHandlers::deliver_cached_info(int32_t var_index) {
    variable_entry& entry = vars[var_index];
    const uint32_t data_type = cols[entry.col_id].data_type;
    switch (data_type) {
        case SMI_BASETYPE_INTEGER32:
        case SMI_BASETYPE_ENUM:
            snmp_set_var_typed_value(current_requestvb, ASN_INTEGER, &entry.uint, sizeof entry.uint);
            break;
        case SMI_BASETYPE_OCTET_STRING: {
            const std::string_view text = served_text(var_index);
            snmp_set_var_typed_value(current_requestvb, ASN_OCTET_STR, text.data(), text.size());
            break;
        }
        case SMI_BASETYPE_UNSIGNED32:
            snmp_set_var_typed_value(current_requestvb, ASN_UNSIGNED, &entry.uint, sizeof entry.uint);
            break;
        case SMI_BASETYPE_UNKNOWN:
            SUBAGENT_LOG(warning, "got SMI_BASETYPE_UNKNOWN on registered OID\n");
            return 1;
        case SMI_BASETYPE_OBJECT_IDENTIFIER:
        case SMI_BASETYPE_INTEGER64:
        case SMI_BASETYPE_UNSIGNED64:
        case SMI_BASETYPE_BITS:
            SUBAGENT_LOG(warning, "col-id:%d, this data type is not yet handled: %d\n", entry.col_id,
                         static_cast<int>(data_type));
            return 1;
        default:
            SUBAGENT_LOG(warning, "col-id:%d, can't process this data type for GET: %d\n", entry.col_id,
                         static_cast<int>(data_type));
            return 1;
    }
    copy_oid(last_oid, current_requestvb->name, current_requestvb->name_length);
    last_oid_len = current_requestvb->name_length;
    last_var_index = var_index;
    entry.flags |= VAR_FLAG_delivered;
    return 0;
}

int32_t SnmpSubagentMibHandlers::process_reserve1() {
    return ::process_reserve1();
}

int SnmpSubagentMibHandlers::process_commitset(int32_t var_index) {
    return ::process_commitset(var_index);
}

void SnmpSubagentMibHandlers::pace_pdu_processing() {
    ::pace_pdu_processing();
}

int SnmpSubagentMibHandlers::handleTempTest() {
    tempTest_requested = false;
    const bool enabled = !liteObjEnabled.load();
    liteObjEnabled = enabled;
    SUBAGENT_LOG(warning, "liteObjEnabled toggled to %s\n", enabled ? "true" : "false");
    return 1;
}
