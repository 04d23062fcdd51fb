#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapPdu.h"

#include <arpa/inet.h>

#include <algorithm>
#include <cstring>
#include <span>
#include <vector>

#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/oidFormatter.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/trapCatalogue.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

std::map<int32_t, std::array<int, kMaxTrapColumns>> varbindings;

namespace {

constexpr int32_t kFirstCatalogueNumber = 200;

constexpr oid kEnterprise[] = {1, 3, 6, 1, 4, 1, 913, 11000, 2000, 500, 1, 251};
constexpr oid kSysUpTime[] = {1, 3, 6, 1, 2, 1, 1, 3, 0};
constexpr oid kSnmpTrapOid[] = {1, 3, 6, 1, 6, 3, 1, 1, 4, 1, 0};
constexpr oid kSnmpTrapEnterprise[] = {1, 3, 6, 1, 6, 3, 1, 1, 4, 3, 0};

constexpr oid kColdStart[] = {1, 3, 6, 1, 6, 3, 1, 1, 5, 1};
constexpr oid kColdStartEnterprise[] = {1, 3, 6, 1, 4, 1, 913, 11000, 2000, 500, 1, 250, 255};

template <size_t length>
bool add(netsnmp_pdu* pdu, const oid (&name)[length], char type, const char* value) {
    return snmp_add_var(pdu, name, length, type, value) == 0;
}

// Adds an OID as an OID; Net-SNMP would look up a string in its MIB files.
template <size_t length>
bool add_oid(netsnmp_pdu* pdu, const oid (&name)[length], std::span<const oid> value) {
    return snmp_pdu_add_variable(pdu, name, length, ASN_OBJECT_ID, value.data(), value.size_bytes()) !=
           nullptr;
}

int fill_header(netsnmp_pdu* pdu, const trap_content& content) {
    pdu->enterprise = snmp_duplicate_objid(kEnterprise, std::size(kEnterprise));
    pdu->enterprise_length = std::size(kEnterprise);
    if (content.is_version_1 && content.agent_ip != nullptr) {
        in_addr address{};
        if (inet_pton(AF_INET, content.agent_ip, &address) != 1) {
            SUBAGENT_LOG(warning, "couldn't parse ip addr string: %s\n", content.agent_ip);
            return 1;
        }
        memcpy(pdu->agent_addr, &address, sizeof pdu->agent_addr);
    }
    pdu->trap_type = content.trapType;
    pdu->specific_type = content.trapVal;
    pdu->time = static_cast<u_long>(content.uptime);
    if (content.is_version_1)
        return 0;
    const std::string uptime = std::to_string(content.uptime);
    if (!add(pdu, kSysUpTime, 't', uptime.c_str())) {
        SUBAGENT_LOG(warning, "Fail on snmp_add_var() for oidUptime: csysuptime=%s\n", uptime.c_str());
        return 1;
    }
    return 0;
}

int add_coldstart(netsnmp_pdu* pdu) {
    if (!add_oid(pdu, kSnmpTrapOid, kColdStart)) {
        SUBAGENT_LOG(warning, "Fail on snmp_add_var() for oidSnmpTrap: full_coldstart_str=%s\n",
                     oid_text(kColdStart, std::size(kColdStart)).c_str());
        return 1;
    }
    if (!add_oid(pdu, kSnmpTrapEnterprise, kColdStartEnterprise)) {
        SUBAGENT_LOG(warning, "Fail on snmp_add_var() for v2oidSnmpTrap: full_ent_str=%s\n",
                     oid_text(kColdStartEnterprise, std::size(kColdStartEnterprise)).c_str());
        return 1;
    }
    return 0;
}

int add_identity(netsnmp_pdu* pdu, int32_t trapVal) {
    std::vector<oid> notification(std::begin(kEnterprise), std::end(kEnterprise));
    notification.insert(notification.end(), {0, static_cast<oid>(trapVal)});
    if (!add_oid(pdu, kSnmpTrapOid, notification)) {
        SUBAGENT_LOG(warning, "Fail on snmp_add_var() for oidSnmpTrap: full_ent_str=%s\n",
                     oid_text(notification.data(), notification.size()).c_str());
        return 1;
    }
    return 0;
}

// Returns the variable of the row that the notification shows.
int32_t shown_variable(const column_record& column) {
    if (!column.is_table())
        return column.first_var;
    const int32_t parents_before =
        column.has_parent() ? (column.trapOuterRow - 1) * static_cast<int32_t>(column.maxNumOfRows) : 0;
    return column.first_var + column.trapRow + parents_before - 1;
}

// Adds the variable of the row to be shown, with its name, by which receivers identify the object. A column
// whose type cannot be sent is logged and left out, because the rest is still useful. A column without a type
// stops the notification.
int add_variable(netsnmp_pdu* pdu, const column_record& column) {
    const int32_t var_index = shown_variable(column);
    const variable_entry& entry = vars[var_index];
    oid name[MAX_handled_oidlen];
    size_t length = column.oid_len;
    memcpy(name, column.oid_ptr, length * sizeof(oid));
    append_seq_nums(name, &length, var_index);

    char type = 0;
    std::string text;
    switch (column.data_type) {
        case SMI_BASETYPE_UNKNOWN:
            SUBAGENT_LOG(warning, "got SMI_BASETYPE_UNKNOWN\n");
            return 1;
        case SMI_BASETYPE_INTEGER32:
            type = 'i';
            text = std::to_string(static_cast<int32_t>(entry.uint));
            break;
        case SMI_BASETYPE_UNSIGNED32:
        case SMI_BASETYPE_ENUM:
            type = 'u';
            text = std::to_string(entry.uint);
            break;
        case SMI_BASETYPE_OCTET_STRING:
        case SMI_BASETYPE_BITS:
            type = 's';
            text = served_text(var_index);
            break;
        case SMI_BASETYPE_OBJECT_IDENTIFIER:
        case SMI_BASETYPE_INTEGER64:
        case SMI_BASETYPE_UNSIGNED64:
            SUBAGENT_LOG(warning, "this data type is not yet handled: %d\n",
                         static_cast<int>(column.data_type));
            return 0;
        default:
            SUBAGENT_LOG(warning, "unknown data type: %d\n", static_cast<int>(column.data_type));
            return 0;
    }
    if (snmp_add_var(pdu, name, length, type, text.c_str()) == 0)
        return 0;
    SUBAGENT_LOG(warning, "Fail on snmp_add_var() for var binding (%d): %s=%s\n", column.first_var,
                 type == 's' ? "pCachedString" : "var_value_str", text.c_str());
    return 1;
}

int add_list(netsnmp_pdu* pdu, int32_t trapVal) {
    const auto list = varbindings.find(trapVal);
    if (list == varbindings.end()) {
        SUBAGENT_LOG(warning, "Fail on finding trapaVal in varbindings map: %d\n", trapVal);
        return 1;
    }
    for (const int col_id : list->second) {
        if (col_id == NUMBER_OF_COLUMNS)
            break;
        if (add_variable(pdu, cols[col_id]) != 0)
            return 1;
    }
    return 0;
}

int add_content(netsnmp_pdu* pdu, const trap_content& content) {
    if (content.trapType == kTrapTypeColdStart)
        return add_coldstart(pdu);
    if (content.trapVal < kFirstCatalogueNumber)
        return add_identity(pdu, content.trapVal);
    // SNMPv1 identifies the notification in the header only.
    if (!content.is_version_1 && add_identity(pdu, content.trapVal) != 0)
        return 1;
    return add_list(pdu, content.trapVal);
}

}  // namespace

void init_varbindings() {
    for (const notification_definition& notification : notifications) {
        std::array<int, kMaxTrapColumns>& list = varbindings[notification.number];
        list.fill(NUMBER_OF_COLUMNS);
        std::ranges::copy(notification.columns, list.begin());
    }
}

int fill_trap_pdu(netsnmp_pdu* pdu, const trap_content& content) {
    if (fill_header(pdu, content) != 0 || add_content(pdu, content) != 0)
        return 1;
    if (!content.msg.empty() && !add(pdu, kEnterprise, 's', content.msg.c_str())) {
        SUBAGENT_LOG(warning, "SNMP PDU Var Fail: %s\n", content.msg.c_str());
        return 1;
    }
    return 0;
}
