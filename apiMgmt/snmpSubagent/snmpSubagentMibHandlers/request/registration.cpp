#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/registration.h"

#include <cstdio>
#include <iterator>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/agentLibrary.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/oidLookup.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/requestHandler.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/oidFormatter.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

// ---- the handler ----

// Net-SNMP passes the requests of one registration, linked by `next`. But the bindings' own chain,
// next_variable, is that of the whole PDU and includes bindings of other registrations, which get a separate
// call. Therefore each request is served separately, with its binding cut out of the chain: an error is set
// on the binding that caused it, and the end of one binding's view does not end the others.

namespace {

class isolated_binding {
  public:
    explicit isolated_binding(netsnmp_variable_list* binding)
        : binding_(binding), next_(binding->next_variable) {
        binding_->next_variable = nullptr;
    }
    ~isolated_binding() { binding_->next_variable = next_; }
    isolated_binding(const isolated_binding&) = delete;
    isolated_binding& operator=(const isolated_binding&) = delete;

  private:
    netsnmp_variable_list* binding_;
    netsnmp_variable_list* next_;
};

class temporary_mode {
  public:
    temporary_mode(netsnmp_agent_request_info* info, int mode) : info_(info), mode_(info->mode) {
        info_->mode = mode;
    }
    ~temporary_mode() { info_->mode = mode_; }
    temporary_mode(const temporary_mode&) = delete;
    temporary_mode& operator=(const temporary_mode&) = delete;

  private:
    netsnmp_agent_request_info* info_;
    int mode_;
};

bool is_below_root(const netsnmp_handler_registration* reginfo, const netsnmp_variable_list* binding) {
    return binding->name_length >= reginfo->rootoid_len &&
           snmp_oidtree_compare(reginfo->rootoid, reginfo->rootoid_len, binding->name,
                                binding->name_length) == 0;
}

// Net-SNMP sets `inclusive` if a walk enters a registration at its first name. If an instance has that name,
// it is itself the response, not its successor. A walk that comes from another registration carries the name
// of its last instance there, which was already delivered.
bool includes_own_name(const netsnmp_handler_registration* reginfo, const netsnmp_agent_request_info* info,
                       const netsnmp_request_info* request) {
    return info->mode == MODE_GETNEXT && request->inclusive != 0 &&
           is_below_root(reginfo, request->requestvb) &&
           get_index_of_oid(request->requestvb->name, request->requestvb->name_length) >= 0;
}

int serve_request(netsnmp_mib_handler* handler, netsnmp_handler_registration* reginfo,
                  netsnmp_agent_request_info* info, netsnmp_request_info* request) {
    const isolated_binding alone(request->requestvb);
    const temporary_mode mode(info, includes_own_name(reginfo, info, request) ? MODE_GET : info->mode);
    return SnmpSubagentMibHandlers::central_oid_handler(handler, reginfo, info, request);
}

bool only_reads(const netsnmp_agent_request_info* info) {
    return info->mode == MODE_GET || info->mode == MODE_GETNEXT;
}

// An error response repeats the bindings of the request, and Net-SNMP leaves the end of each search range in
// them as value. Clearing the values keeps the error no larger than the request.
int fail(netsnmp_agent_request_info* info, netsnmp_request_info* request, int error) {
    if (request->status == SNMP_ERR_NOERROR)
        netsnmp_set_request_error(info, request, error);
    if (only_reads(info)) {
        netsnmp_variable_list* asked = info->asp->orig_pdu->variables;
        for (; asked != nullptr; asked = asked->next_variable)
            snmp_set_var_typed_value(asked, ASN_NULL, nullptr, 0);
    }
    return error;
}

constexpr size_t kHeader = 28;  // 20 of every PDU, and 8 of a response
constexpr size_t kWord = 4;     // all fields are padded to words
constexpr oid kInternet[] = {1, 3, 6, 1};
constexpr size_t kShortened = 5;  // these four and the next one, which is in the name's header
constexpr oid kMaximumShortened = 255;

size_t size_of_name(const netsnmp_variable_list& binding) {
    const bool is_shortened = binding.name_length >= kShortened &&
                              snmp_oid_compare(binding.name, 4, kInternet, 4) == 0 && binding.name[4] > 0 &&
                              binding.name[4] <= kMaximumShortened;
    return kWord + kWord * (binding.name_length - (is_shortened ? kShortened : 0));
}

/** Covers the types of the store, and the types without value that mark errors. */
size_t size_of_value(const netsnmp_variable_list& binding) {
    switch (binding.type) {
        case ASN_OCTET_STR:
            return kWord + (binding.val_len + kWord - 1) / kWord * kWord;
        case ASN_INTEGER:
        case ASN_UNSIGNED:
            return kWord;
        default:
            return 0;
    }
}

// Returns the size, in octets, of the AgentX response with these bindings.
size_t size_of_response(const netsnmp_variable_list* bindings) {
    size_t size = kHeader;
    for (; bindings != nullptr; bindings = bindings->next_variable)
        size += kWord + size_of_name(*bindings) + size_of_value(*bindings);
    return size;
}

}  // namespace

int serve_requests(netsnmp_mib_handler* handler, netsnmp_handler_registration* reginfo,
                   netsnmp_agent_request_info* info, netsnmp_request_info* first) {
    for (netsnmp_request_info* request = first; request != nullptr; request = request->next) {
        const int result = serve_request(handler, reginfo, info, request);
        if (result == SNMP_ERR_NOERROR)
            continue;
        // An SNMPv1 manager gets noSuchName with the right index, an SNMPv2c manager noSuchInstance.
        if (info->mode == MODE_GET && result == SNMP_ERR_NOSUCHNAME) {
            netsnmp_set_request_error(info, request, SNMP_NOSUCHINSTANCE);
            continue;
        }
        // AgentX cannot report a failed COMMIT: the manager sees a success.
        if (info->mode == MODE_SET_COMMIT)
            SUBAGENT_LOG(warning, "SET failed at %s: this binding and those after it were not executed\n",
                         oid_text(request->requestvb->name, request->requestvb->name_length).c_str());
        return fail(info, request, result);
    }
    // The size counts all bindings of the PDU. Those of other registrations may already have values.
    const bool is_too_big =
        only_reads(info) && size_of_response(info->asp->pdu->variables) > kMaximumResponse;
    return is_too_big ? fail(info, first, SNMP_ERR_TOOBIG) : SNMP_ERR_NOERROR;
}

// ---- registering ----

namespace {

constexpr oid kVornEnterprise[] = {1, 3, 6, 1, 4, 1, 913};
constexpr oid kLumivantEnterprise[] = {1, 3, 6, 1, 4, 1, 27405};
constexpr int kReadWrite = HANDLER_CAN_GETANDGETNEXT | HANDLER_CAN_SET;
constexpr int kReadOnly = HANDLER_CAN_GETANDGETNEXT;

// One handle per registration; null if not registered.
netsnmp_handler_registration* vorn_subtree = nullptr;
netsnmp_handler_registration* lmv_subtree = nullptr;
netsnmp_handler_registration* sys_contact = nullptr;
netsnmp_handler_registration* sys_name = nullptr;
netsnmp_handler_registration* sys_location = nullptr;

// `place` identifies the registration in log lines.
int register_oid(const char* name, const char* place, const oid* root, size_t length, int modes,
                 netsnmp_handler_registration** handle) {
    *handle = netsnmp_create_handler_registration(name, serve_requests, root, length, modes);
    if (*handle == nullptr) {
        SUBAGENT_LOG(warning, "Failed at netsnmp_create_handler_registration()%s\n", place);
        return 1;
    }
    const int reg_result = netsnmp_register_handler(*handle);
    if (reg_result != 0) {
        *handle = nullptr;  // the library has freed it
        SUBAGENT_LOG(warning, "raw table registration failed%s: reg_result: %d\n", place, reg_result);
        return 1;
    }
    return 0;
}

}  // namespace

int register_subtree() {
    if (vorn_subtree != nullptr)
        return 1;
    if (register_oid("vornEnterprise", " for vorn subtree", kVornEnterprise, std::size(kVornEnterprise),
                     kReadWrite, &vorn_subtree) != 0)
        return 1;
    return register_oid("lumivantEnterprise", " for lmv subtree", kLumivantEnterprise,
                        std::size(kLumivantEnterprise), kReadWrite, &lmv_subtree);
}

int register_a_sysvar(int col_id, netsnmp_handler_registration** handle_slot) {
    const column_record& column = cols[col_id];
    char name[24];
    snprintf(name, sizeof name, "ColId-%d", col_id);
    oid instance[MAX_handled_oidlen + 1];
    copy_oid(instance, column.oid_ptr, column.oid_len);
    instance[column.oid_len] = 0;
    return register_oid(name, "", instance, column.oid_len + 1U,
                        column.set_fn != nullptr ? kReadWrite : kReadOnly, handle_slot);
}

int register_all_sysvars() {
    const struct {
        int col_id;
        netsnmp_handler_registration** handle;
    } sysvars[] = {
        {COLID_sysContact, &sys_contact}, {COLID_sysName, &sys_name}, {COLID_sysLocation, &sys_location}};
    for (const auto& each : sysvars) {
        const int result = register_a_sysvar(each.col_id, each.handle);
        if (result != 0)
            return result;
    }
    return 0;
}

int unregister_all_oids() {
    if (vorn_subtree == nullptr)
        return 1;
    const struct {
        netsnmp_handler_registration** handle;
        const char* log_name;
    } registrations[] = {{&vorn_subtree, "vorn subtree"},
                         {&lmv_subtree, "lmv subtree"},
                         {&sys_contact, "sysContact"},
                         {&sys_name, "sysName"},
                         {&sys_location, "sysLocation"}};
    for (const auto& each : registrations) {
        const int error = netsnmp_unregister_handler(*each.handle);
        if (error != 0) {
            SUBAGENT_LOG(warning, "failed to unregister %s: error: %d\n", each.log_name, error);
            return 1;
        }
        *each.handle = nullptr;
    }
    return 0;
}
