#include "apiMgmt/snmpSubagent/snmpSubagentMain/agentLibrary.h"

#include <algorithm>

#include "apiMgmt/common/platform/clock.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/netSnmpHeaders.h"

// Exported by the agent library and declared in no header of it.
extern "C" {
extern netsnmp_session* main_session;
int agentx_send_ping(netsnmp_session* session);
}

void agent_log_to_stderr() {
    snmp_enable_stderrlog();
}

void agent_become_subagent() {
    netsnmp_ds_set_boolean(NETSNMP_DS_APPLICATION_ID, NETSNMP_DS_AGENT_ROLE, 1);
}

int agent_init() {
    return init_agent(kAgentApplication);
}

void agent_init_snmp() {
    init_snmp(kAgentApplication);
}

bool agent_has_main_session() {
    return main_session != nullptr;
}

int agent_send_ping() {
    return agentx_send_ping(main_session);
}

int agent_check() {
    return agent_check_and_process(0);
}

void agent_wait(long timeout_us, int also) {
    fd_set descriptors;
    FD_ZERO(&descriptors);
    int count = 0;
    int block = 0;
    timeval timeout{.tv_sec = 0, .tv_usec = timeout_us};
    snmp_select_info(&count, &descriptors, &timeout, &block);
    if (also >= 0 && also < FD_SETSIZE) {
        FD_SET(also, &descriptors);
        count = std::max(count, also + 1);
    }
    // A descriptor that is just going away must not turn the wait into a spin.
    if (select(count, &descriptors, nullptr, nullptr, &timeout) < 0)
        ClockSleepMicroseconds(timeout_us);
}

void agent_shutdown() {
    snmp_shutdown(kAgentApplication);
}

void agent_oid_text(int col_id, char* text, unsigned long size) {
    snprint_objid(text, size, cols[col_id].oid_ptr, cols[col_id].oid_len);
}
