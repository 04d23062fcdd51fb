#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/answerSize.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/oidLookup.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/registration.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/requestHandler.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

// Between Net-SNMP and central_oid_handler. Net-SNMP hands over the requests of one registration, linked
// by `next`; but the bindings' own chain, next_variable, is that of the whole PDU and holds bindings of other
// registrations, which get a call of their own. So each request is served by itself, its binding cut out of
// the chain for the time of the call: an error then goes to the binding that earned it, and a binding that
// ends its view does not end the others.

namespace {

class cut_out_binding {
  public:
    explicit cut_out_binding(netsnmp_variable_list* binding)
        : binding_(binding), next_(binding->next_variable) {
        binding_->next_variable = nullptr;
    }
    ~cut_out_binding() { binding_->next_variable = next_; }
    cut_out_binding(const cut_out_binding&) = delete;
    cut_out_binding& operator=(const cut_out_binding&) = delete;

  private:
    netsnmp_variable_list* binding_;
    netsnmp_variable_list* next_;
};

class changed_mode {
  public:
    changed_mode(netsnmp_agent_request_info* info, int mode) : info_(info), mode_(info->mode) {
        info_->mode = mode;
    }
    ~changed_mode() { info_->mode = mode_; }
    changed_mode(const changed_mode&) = delete;
    changed_mode& operator=(const changed_mode&) = delete;

  private:
    netsnmp_agent_request_info* info_;
    int mode_;
};

bool lies_in(const netsnmp_handler_registration* reginfo, const netsnmp_variable_list* binding) {
    return binding->name_length >= reginfo->rootoid_len &&
           snmp_oidtree_compare(reginfo->rootoid, reginfo->rootoid_len, binding->name,
                                binding->name_length) == 0;
}

// Net-SNMP asks "from here on" where a walk enters a registration at its very first name. The instance with
// that name is then the answer, and not the one behind it. A walk that has left another registration keeps
// the name of its last instance there; that one was given already.
bool asks_for_itself(const netsnmp_handler_registration* reginfo, const netsnmp_agent_request_info* info,
                     const netsnmp_request_info* request) {
    return info->mode == MODE_GETNEXT && request->inclusive != 0 && lies_in(reginfo, request->requestvb) &&
           get_index_of_oid(request->requestvb->name, request->requestvb->name_length) >= 0;
}

int serve_request(netsnmp_mib_handler* handler, netsnmp_handler_registration* reginfo,
                  netsnmp_agent_request_info* info, netsnmp_request_info* request) {
    const cut_out_binding alone(request->requestvb);
    const changed_mode mode(info, asks_for_itself(reginfo, info, request) ? MODE_GET : info->mode);
    return SnmpSubagentMibHandlers::central_oid_handler(handler, reginfo, info, request);
}

bool only_reads(const netsnmp_agent_request_info* info) {
    return info->mode == MODE_GET || info->mode == MODE_GETNEXT;
}

// Net-SNMP writes an error with the bindings as they were asked for, and the range of each request as its
// value: without those the error takes no more room than the request did.
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

}  // namespace

int serve_requests(netsnmp_mib_handler* handler, netsnmp_handler_registration* reginfo,
                   netsnmp_agent_request_info* info, netsnmp_request_info* first) {
    for (netsnmp_request_info* request = first; request != nullptr; request = request->next) {
        const int result = serve_request(handler, reginfo, info, request);
        if (result == SNMP_ERR_NOERROR)
            continue;
        // A manager of version 1 sees noSuchName with the right index, one of version 2c noSuchInstance.
        if (info->mode == MODE_GET && result == SNMP_ERR_NOSUCHNAME) {
            netsnmp_set_request_error(info, request, SNMP_NOSUCHINSTANCE);
            continue;
        }
        // AgentX has no answer to a COMMIT: the manager is told of a success.
        if (info->mode == MODE_SET_COMMIT)
            SUBAGENT_LOG(4, "SET failed at %s: this binding and those behind it were not carried out\n",
                         oid_text(request->requestvb->name, request->requestvb->name_length).c_str());
        return fail(info, request, result);
    }
    // All bindings of the PDU, those of other registrations included, which may have their values already.
    const bool is_too_big = only_reads(info) && size_of_answer(info->asp->pdu->variables) > kGreatestAnswer;
    return is_too_big ? fail(info, first, SNMP_ERR_TOOBIG) : SNMP_ERR_NOERROR;
}
