#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/registration.h"

#include <cstdio>
#include <iterator>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/oidLookup.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

namespace {

constexpr oid kVornEnterprise[] = {1, 3, 6, 1, 4, 1, 913};
constexpr oid kLumivantEnterprise[] = {1, 3, 6, 1, 4, 1, 27405};
constexpr int kReadWrite = HANDLER_CAN_GETANDGETNEXT | HANDLER_CAN_SET;
constexpr int kReadOnly = HANDLER_CAN_GETANDGETNEXT;

// One handle for each registration; null while there is none.
netsnmp_handler_registration* vorn_subtree = nullptr;
netsnmp_handler_registration* lmv_subtree = nullptr;
netsnmp_handler_registration* sys_contact = nullptr;
netsnmp_handler_registration* sys_name = nullptr;
netsnmp_handler_registration* sys_location = nullptr;

// place: how the log lines name what could not be registered.
int register_oid(const char* name, const char* place, const oid* root, size_t length, int modes,
                 netsnmp_handler_registration** handle) {
    *handle = netsnmp_create_handler_registration(name, serve_requests, root, length, modes);
    if (*handle == nullptr) {
        SUBAGENT_LOG(4, "Failed at netsnmp_create_handler_registration()%s\n", place);
        return 1;
    }
    const int reg_result = netsnmp_register_handler(*handle);
    if (reg_result != 0) {
        *handle = nullptr;  // the library has freed it
        SUBAGENT_LOG(4, "raw table registration failed%s: reg_result: %d\n", place, reg_result);
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
            SUBAGENT_LOG(4, "failed to unregister %s: error: %d\n", each.log_name, error);
            return 1;
        }
        *each.handle = nullptr;
    }
    return 0;
}
