#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/enterpriseNumber.h"

#include <algorithm>
#include <iterator>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/requestContext.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/oidFormatter.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

bool rcvd_req_with_old_enterprise_num = false;

namespace {

constexpr size_t kCommonLength = 6;  // 1.3.6.1.4.1
constexpr oid kOldNumber = 27405;
constexpr size_t kOldLength = kCommonLength + 1;
constexpr oid kCurrentNumbers[] = {913, 11000, 2000, 500, 1};
constexpr size_t kCurrentLength = kCommonLength + std::size(kCurrentNumbers);
constexpr size_t kGrowth = kCurrentLength - kOldLength;

void report_old_number(const netsnmp_variable_list* binding) {
    if (last_resp_was_endofmibview)
        return;
    const auto length = static_cast<int>(binding->name_length);
    if (!rcvd_req_with_old_enterprise_num) {
        rcvd_req_with_old_enterprise_num = true;
        SUBAGENT_LOG(warning,
                     "requester using old enterprise number: current_requestvb->name_length: %d, "
                     "current_requestvb->name: %s\n",
                     length, oid_text(binding->name, binding->name_length).c_str());
    } else {
        SUBAGENT_LOG(debug,
                     "requester using old enterprise number: current_requestvb->name_length: %d, "
                     "current_requestvb->name: %s\n",
                     length, oid_text(binding->name, binding->name_length).c_str());
    }
}

}  // namespace

bool has_old_enterprise_number(const netsnmp_variable_list* binding) {
    return binding->name_length >= kOldLength && binding->name[kCommonLength] == kOldNumber;
}

bool is_old_enterprise_number(const netsnmp_variable_list* binding) {
    return binding->name_length == kOldLength && has_old_enterprise_number(binding);
}

bool expand_old_enterprise_number(netsnmp_variable_list* binding) {
    report_old_number(binding);
    if (binding->name_length + kGrowth > MAX_handled_oidlen) {
        SUBAGENT_LOG(debug,
                     "not enough room to expand oid: current_requestvb->name_length: %d, "
                     "current_requestvb->name: %s\n",
                     static_cast<int>(binding->name_length),
                     oid_text(binding->name, binding->name_length).c_str());
        return false;
    }
    oid name[MAX_handled_oidlen];
    oid* end = std::copy_n(binding->name, kCommonLength, name);
    end = std::copy(std::begin(kCurrentNumbers), std::end(kCurrentNumbers), end);
    end = std::copy(binding->name + kOldLength, binding->name + binding->name_length, end);
    snmp_set_var_objid(binding, name, static_cast<size_t>(end - name));
    return true;
}

void shrink_to_old_enterprise_number(netsnmp_variable_list* binding) {
    oid name[MAX_handled_oidlen];
    oid* end = std::copy_n(binding->name, kCommonLength, name);
    *end++ = kOldNumber;
    end = std::copy(binding->name + kCurrentLength, binding->name + binding->name_length, end);
    snmp_set_var_objid(binding, name, static_cast<size_t>(end - name));
}
