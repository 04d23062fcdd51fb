#include "tests/unit/core/fakes/snmpPdu.h"

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/registration.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/requestHandler.h"
#include "tests/unit/core/fakes/mibWorld.h"

snmp_pdu_of_test::snmp_pdu_of_test(int mode) {
    info_.mode = mode;
    info_.asp = &session_;
    session_.pdu = &pdu_;
    session_.orig_pdu = &asked_;
    registered_at("1.3.6.1.4.1.913");
}

snmp_pdu_of_test::~snmp_pdu_of_test() {
    snmp_free_varbind(bindings_);
    snmp_free_varbind(asked_.variables);
}

void snmp_pdu_of_test::add(const std::string& name, int type, const void* value, size_t size) {
    const std::vector<oid> arcs = oid_of(name);
    snmp_varlist_add_variable(&bindings_, arcs.data(), arcs.size(), static_cast<u_char>(type), value, size);
    constexpr oid kEnd[] = {0, 0};
    snmp_varlist_add_variable(&asked_.variables, arcs.data(), arcs.size(), ASN_OBJECT_ID, kEnd, sizeof kEnd);
}

void snmp_pdu_of_test::add_request(bool inclusive) {
    netsnmp_request_info& request = requests_.emplace_back();
    request = {};
    for (netsnmp_variable_list* each = bindings_; each != nullptr; each = each->next_variable)
        request.requestvb = each;
    request.inclusive = inclusive ? 1 : 0;
    request.agent_req_info = &info_;
    if (requests_.size() > 1)
        requests_[requests_.size() - 2].next = &request;
}

snmp_pdu_of_test& snmp_pdu_of_test::ask(const std::string& name, bool inclusive) {
    add(name, ASN_NULL, nullptr, 0);
    add_request(inclusive);
    return *this;
}

snmp_pdu_of_test& snmp_pdu_of_test::set(const std::string& name, const std::string& text) {
    add(name, ASN_OCTET_STR, text.data(), text.size());
    add_request(false);
    return *this;
}

snmp_pdu_of_test& snmp_pdu_of_test::set_number(const std::string& name, long number) {
    add(name, ASN_INTEGER, &number, sizeof number);
    add_request(false);
    return *this;
}

snmp_pdu_of_test& snmp_pdu_of_test::add_parsed(const netsnmp_variable_list& parsed) {
    const bool is_range = parsed.type == ASN_PRIV_INCL_RANGE || parsed.type == ASN_PRIV_EXCL_RANGE;
    netsnmp_variable_list alone = parsed;
    alone.next_variable = nullptr;
    for (netsnmp_variable_list** end : {&bindings_, &asked_.variables}) {
        while (*end != nullptr)
            end = &(*end)->next_variable;
        *end = snmp_clone_varbind(&alone);
    }
    add_request(parsed.type == ASN_PRIV_INCL_RANGE);
    if (is_range)
        snmp_set_var_typed_value(requests_.back().requestvb, ASN_NULL, nullptr, 0);
    return *this;
}

snmp_pdu_of_test& snmp_pdu_of_test::registered_at(const std::string& name) {
    root_ = oid_of(name);
    registration_.rootoid = root_.data();
    registration_.rootoid_len = root_.size();
    return *this;
}

snmp_pdu_of_test& snmp_pdu_of_test::foreign(const std::string& name) {
    add(name, ASN_NULL, nullptr, 0);
    return *this;
}

snmp_pdu_of_test& snmp_pdu_of_test::rename(size_t binding, const std::string& name) {
    netsnmp_variable_list* found = bindings_;
    while (binding-- > 0)
        found = found->next_variable;
    const std::vector<oid> arcs = oid_of(name);
    snmp_set_var_objid(found, arcs.data(), arcs.size());
    return *this;
}

int snmp_pdu_of_test::serve(int mode) {
    info_.mode = mode;
    pdu_.variables = bindings_;
    return serve_requests(nullptr, &registration_, &info_, &requests_.front());
}

int snmp_pdu_of_test::call_handler() {
    return SnmpSubagentMibHandlers::central_oid_handler(nullptr, &registration_, &info_, &requests_.front());
}

std::string text_of_value(const netsnmp_variable_list& variable) {
    switch (variable.type) {
        case ASN_NULL:
            return "null";
        case ASN_INTEGER:
            return "integer " + std::to_string(*variable.val.integer);
        case ASN_UNSIGNED:
            return "gauge " + std::to_string(static_cast<unsigned long>(*variable.val.integer));
        case ASN_TIMETICKS:
            return "time " + std::to_string(*variable.val.integer);
        case ASN_OCTET_STR:
            return "\"" + std::string(reinterpret_cast<char*>(variable.val.string), variable.val_len) + "\"";
        case ASN_OBJECT_ID:
            return "oid " + text_of(variable.val.objid, variable.val_len / sizeof(oid));
        case SNMP_NOSUCHINSTANCE:
            return "noSuchInstance";
        case SNMP_ENDOFMIBVIEW:
            return "endOfMibView";
        default:
            return "type " + std::to_string(variable.type);
    }
}

std::string snmp_pdu_of_test::answer(size_t binding) const {
    const netsnmp_variable_list* found = bindings_;
    while (binding-- > 0)
        found = found->next_variable;
    std::string text = text_of(found->name, found->name_length) + " = " + text_of_value(*found);
    for (const netsnmp_request_info& request : requests_) {
        if (request.requestvb == found && request.status != 0)
            text += " !" + std::to_string(request.status);
    }
    return text;
}

std::string snmp_pdu_of_test::answers() const {
    std::string text;
    size_t binding = 0;
    for (const netsnmp_variable_list* each = bindings_; each != nullptr; each = each->next_variable)
        text += answer(binding++) + "\n";
    return text;
}

size_t snmp_pdu_of_test::ranges() const {
    size_t count = 0;
    for (const netsnmp_variable_list* each = asked_.variables; each != nullptr; each = each->next_variable)
        count += each->type == ASN_OBJECT_ID ? 1 : 0;
    return count;
}

namespace {

std::string answer_to(int mode, const std::string& name) {
    snmp_pdu_of_test pdu(mode);
    const int result = pdu.ask(name).serve();
    return pdu.answer(0) + (result != 0 ? " result " + std::to_string(result) : "");
}

}  // namespace

std::string get(const std::string& name) {
    return answer_to(MODE_GET, name);
}

std::string get_next(const std::string& name) {
    return answer_to(MODE_GETNEXT, name);
}
