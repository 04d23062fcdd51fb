#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/requestHandler.h"

#include <sched.h>

#include <algorithm>
#include <string>
#include <vector>

#include "apiMgmt/common/platform/clock.h"
#include "apiMgmt/snmpSubagent/snmpSubagentComm/snmpSubagentComm.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/processState.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/enterpriseNumber.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/oidLookup.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibValues.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

netsnmp_agent_request_info* reqinfo = nullptr;
netsnmp_request_info* requests = nullptr;
netsnmp_variable_list* current_requestvb = nullptr;
int snmpErr = SNMP_ERR_NOERROR;
bool last_resp_was_endofmibview = false;
int permission_to_process_pdu = 0;
int pdu_failures = 0;
int64_t next_pdu_slot_ms = 0;
std::atomic<bool> liteObjEnabled{true};
std::atomic<bool> tempTest_requested{false};

namespace {

constexpr int kPdusPerTick = 10;
constexpr int kGreatestFailures = 4;
constexpr size_t kShortestName = 6;
constexpr int64_t kPduSlotMs = 2;
constexpr int64_t kBurstMs = 1000;

// One PDU may take several handler calls in a tick, one for each registration and binding. Pacing,
// permission and failures count PDUs, so the calls of one PDU are recognised by its agent session.
struct pdu_of_tick {
    const netsnmp_agent_session* session = nullptr;
    int failures_before = 0;
    bool has_failed = false;
    std::vector<const netsnmp_variable_list*> ended;  // bindings whose view has ended in this tick

    bool has_ended(const netsnmp_variable_list* binding) const {
        return std::find(ended.begin(), ended.end(), binding) != ended.end();
    }
};
pdu_of_tick current_pdu;

std::string current_name() {
    return oid_text(current_requestvb->name, current_requestvb->name_length);
}

int current_length() {
    return static_cast<int>(current_requestvb->name_length);
}

// One line for each mode, with the name that is being served.
void log_mode(const char* mode) {
    SUBAGENT_LOG(7, "reqinfo->mode: %s: current_requestvb->name_length: %d, current_requestvb->name: %s\n",
                 mode, current_length(), current_name().c_str());
}

// Whether the call belongs to a PDU that may be served in this tick.
bool admit_pdu(const netsnmp_agent_request_info* info) {
    if (current_pdu.session != nullptr && current_pdu.session == info->asp)
        return true;
    SnmpSubagentMibHandlers::pace_pdu_processing();
    if (permission_to_process_pdu <= 0)
        return false;
    --permission_to_process_pdu;
    current_pdu = {info->asp, pdu_failures, false, {}};
    return true;
}

void count_success() {
    if (!current_pdu.has_failed)
        pdu_failures = 0;
    snmpErr = SNMP_ERR_NOERROR;
}

void count_failure(int retVal) {
    if (!current_pdu.has_failed)
        pdu_failures = current_pdu.failures_before + 1;
    current_pdu.has_failed = true;
    if (pdu_failures > kGreatestFailures) {
        permission_to_process_pdu = 0;
        pdu_failures = 0;
        SUBAGENT_LOG(7, "taking away permission_to_process_pdu\n");
    }
    if (current_requestvb != nullptr)
        SUBAGENT_LOG(7, "could not process request: oid: %s, retVal: %d, snmpErr: %d\n",
                     current_name().c_str(), retVal, snmpErr);
    else
        SUBAGENT_LOG(7, "could not process request: no current_requestvb: retVal: %d, snmpErr: %d\n", retVal,
                     snmpErr);
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

// Whether an answer before this one, or the same binding in another registration, was the end of the view.
// That another binding of the same PDU has just ended does not count.
bool follows_end_of_view() {
    return current_pdu.has_ended(current_requestvb) ||
           (last_resp_was_endofmibview && current_pdu.ended.empty());
}

int serve_getnext(bool name_was_expanded) {
    // A walk that has just ended must not begin anew, in the old form, at the start of the store.
    if (name_was_expanded && follows_end_of_view()) {
        SUBAGENT_LOG(7,
                     "reqinfo->mode: MODE_GETNEXT: got rcvd_req_with_old_enterprise_num and "
                     "last_resp_was_endofmibview\n");
        set_current_request_error(SNMP_ENDOFMIBVIEW);
        snmpErr = SNMP_ERR_NOERROR;
        return 1;
    }
    log_mode("MODE_GETNEXT");
    const int32_t var_index = get_next_oid();
    if (var_index < 0) {
        current_pdu.ended.push_back(current_requestvb);
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

int serve_mode(bool name_was_expanded) {
    switch (reqinfo->mode) {
        case MODE_GET:
            return serve_get();
        case MODE_GETNEXT:
            return serve_getnext(name_was_expanded);
        case MODE_GETBULK:
            SUBAGENT_LOG(4, "Error: Recieved a GETBULK request from master agent\n");
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
            SUBAGENT_LOG(7, "reqinfo->mode: MODE_SET_FREE\n");
            return 0;
        case MODE_SET_UNDO:
            SUBAGENT_LOG(7, "reqinfo->mode: MODE_SET_UNDO\n");
            return 0;
        default:
            SUBAGENT_LOG(4, "UNKNOWN MODE: reqinfo->mode: %d\n", reqinfo->mode);
            return 1;
    }
}

int serve_binding() {
    if (current_requestvb->name_length < kShortestName) {
        SUBAGENT_LOG(
            7, "request oid is too short: current_requestvb->name_length: %d, current_requestvb->name: %s\n",
            current_length(), current_name().c_str());
        return 1;
    }
    const bool is_old_form = has_old_enterprise_number(current_requestvb);
    if (is_old_form && !expand_old_enterprise_number(current_requestvb))
        return 1;
    const int result = serve_mode(is_old_form);
    if (is_old_form)
        shrink_to_old_enterprise_number(current_requestvb);
    return result;
}

// Serves the bindings one after the other, up to the first that fails.
int serve_bindings() {
    int result = 1;
    while (current_requestvb != nullptr) {
        result = serve_binding();
        if (result != 0)
            break;
        sched_yield();
        current_requestvb = current_requestvb->next_variable;
        if (current_requestvb != nullptr)
            SUBAGENT_LOG(7, "another var in same request:\n");
    }
    return result;
}

int serve_admitted(netsnmp_agent_request_info* info, netsnmp_request_info* request) {
    snmpErr = SNMP_ERR_GENERR;
    snmpSubagentComm->set_agentx_state(true);
    reqinfo = info;
    requests = request;
    current_requestvb = request->requestvb;
    const int retVal = serve_bindings();
    sched_yield();
    if (retVal == 0)
        count_success();
    else
        count_failure(retVal);
    return snmpErr;
}

// What a manager may write: any text into the columns outside 4 to 172, and only this one inside.
bool is_acceptable_text(int col_id) {
    static const std::string kForceTrap = "ForceTrap";
    if (col_id < COLID_productName || col_id > COLID_trapActionText)
        return true;
    return current_requestvb->val_len == kForceTrap.size() &&
           std::equal(kForceTrap.begin(), kForceTrap.end(), current_requestvb->val.string);
}

int32_t refuse_set(int error, int col_id) {
    snmpErr = error;
    set_current_request_error(error);
    SUBAGENT_LOG(7, "failed for reserve1: col-id: %d\n", col_id);
    return -1;
}

// A forced notification counts as one for an object that is not healthy.
void note_forced_trap(int col_id) {
    if (col_id < COLID_productName || col_id > COLID_trapActionText)
        return;
    trapAlertState = 2;
    store_number(cols[COLID_trapAlertState].first_var, trapAlertState);
}

}  // namespace

void begin_agent_tick() {
    permission_to_process_pdu = kPdusPerTick;
    current_pdu = {};
}

void end_agent_tick() {
    permission_to_process_pdu = 0;
    current_pdu = {};
}

void set_current_request_error(int error) {
    netsnmp_set_request_error(reqinfo, requests, error);
}

int SnmpSubagentMibHandlers::central_oid_handler(netsnmp_mib_handler*, netsnmp_handler_registration*,
                                                 netsnmp_agent_request_info* info,
                                                 netsnmp_request_info* request) {
    if (mib_mutex.TryLock() != 0) {
        SUBAGENT_LOG(7, "Can't get lock to process PDU(s): reqinfo->mode: %d\n", info->mode);
        pdu_failures = 0;
        return SNMP_ERR_GENERR;
    }
    int result = SNMP_ERR_GENERR;
    if (admit_pdu(info)) {
        result = serve_admitted(info, request);
    } else {
        SUBAGENT_LOG(7, "NO permission to process: reqinfo->mode: %d\n", info->mode);
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
        case SMI_BASETYPE_OCTET_STRING:
            snmp_set_var_typed_value(current_requestvb, ASN_OCTET_STR, entry.str.data(), entry.str.size());
            break;
        case SMI_BASETYPE_UNSIGNED32:
            snmp_set_var_typed_value(current_requestvb, ASN_UNSIGNED, &entry.uint, sizeof entry.uint);
            break;
        case SMI_BASETYPE_UNKNOWN:
            SUBAGENT_LOG(4, "got SMI_BASETYPE_UNKNOWN on registered OID\n");
            return 1;
        case 3:
        case 5:
        case 6:
        case 11:
            SUBAGENT_LOG(4, "col-id:%d, this data type is not yet handled: %d\n", entry.col_id,
                         static_cast<int>(data_type));
            return 1;
        default:
            SUBAGENT_LOG(4, "col-id:%d, can't process this data type for GET: %d\n", entry.col_id,
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
    const int32_t var_index = get_index_of_oid(current_requestvb->name, current_requestvb->name_length);
    if (var_index < 0) {
        SUBAGENT_LOG(7, "could not find index for oid: current_requestvb->name: %s\n",
                     current_name().c_str());
        return refuse_set(SNMP_ERR_NOSUCHNAME, -1);
    }
    const int col_id = vars[var_index].col_id;
    if (!is_cached(var_index)) {
        SUBAGENT_LOG(7, "oid is not cached: col-id: %d\n", col_id);
        return refuse_set(SNMP_ERR_NOSUCHNAME, col_id);
    }
    if (cols[col_id].set_fn == nullptr) {
        SUBAGENT_LOG(7, "no Set handler defined: col-id: %d\n", col_id);
        return refuse_set(SNMP_ERR_NOTWRITABLE, col_id);
    }
    if (cols[col_id].data_type != SMI_BASETYPE_OCTET_STRING) {
        SUBAGENT_LOG(7, "data_type is not string: col-id: %d\n", col_id);
        return refuse_set(SNMP_ERR_WRONGTYPE, col_id);
    }
    if (!is_acceptable_text(col_id)) {
        SUBAGENT_LOG(7, "string is not 'ForceTrap': col-id: %d\n", col_id);
        return refuse_set(SNMP_ERR_BADVALUE, col_id);
    }
    note_forced_trap(col_id);
    return var_index;
}

int SnmpSubagentMibHandlers::process_commitset(int32_t var_index) {
    variable_entry& entry = vars[var_index];
    const column_record& column = cols[entry.col_id];
    switch (column.data_type) {
        case SMI_BASETYPE_OCTET_STRING:
            entry.str.assign(reinterpret_cast<const char*>(current_requestvb->val.string),
                             current_requestvb->val_len);
            return column.set_fn(var_index);
        case SMI_BASETYPE_UNKNOWN:
            SUBAGENT_LOG(4, "got SMI_BASETYPE_UNKNOWN on registered OID\n");
            return 1;
        case SMI_BASETYPE_INTEGER32:
        case 3:
        case SMI_BASETYPE_UNSIGNED32:
        case 5:
        case 6:
        case SMI_BASETYPE_ENUM:
        case 11:
        case 12:
            SUBAGENT_LOG(4, "this data type is not yet coded for: %d, col-id: %d\n",
                         static_cast<int>(column.data_type), entry.col_id);
            return 1;
        default:
            SUBAGENT_LOG(4, "unknown data type: %d, col-id: %d\n", static_cast<int>(column.data_type),
                         entry.col_id);
            return 1;
    }
}

void SnmpSubagentMibHandlers::pace_pdu_processing() {
    const int64_t now_ms = ClockNowMs();
    const int64_t slot_ms = next_pdu_slot_ms + kPduSlotMs;
    if (now_ms > slot_ms) {
        next_pdu_slot_ms = now_ms + kPduSlotMs;
        return;
    }
    if (slot_ms > now_ms + kBurstMs)
        ClockSleepMicroseconds(kPduSlotMs * 1000);
    next_pdu_slot_ms = slot_ms;
}

int SnmpSubagentMibHandlers::handleTempTest() {
    tempTest_requested = false;
    const bool enabled = !liteObjEnabled.load();
    liteObjEnabled = enabled;
    SUBAGENT_LOG(4, "liteObjEnabled toggled to %s\n", enabled ? "true" : "false");
    return 1;
}
