#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/agentLibrary.h"

#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <vector>

#include "apiMgmt/common/platform/clock.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/netSnmpHeaders.h"

// Exported by the agent library, but not declared in its headers.
extern "C" {
extern netsnmp_session* main_session;
int agentx_send_ping(netsnmp_session* session);
}

void agent_log_to_stderr() {
    snmp_enable_stderrlog();
}

void agent_become_subagent() {
    netsnmp_ds_set_boolean(NETSNMP_DS_APPLICATION_ID, NETSNMP_DS_AGENT_ROLE, 1);
    // The daemon has no state to save, and the library's directory belongs to another user.
    netsnmp_ds_set_boolean(NETSNMP_DS_LIBRARY_ID, NETSNMP_DS_LIB_DONT_PERSIST_STATE, 1);
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

bool agent_wait(int64_t timeout_us, int descriptor, short events) {
    fd_set of_library;
    FD_ZERO(&of_library);
    int count = 0;
    int block = 0;
    timeval timeout{.tv_sec = timeout_us / kSecondUs, .tv_usec = timeout_us % kSecondUs};
    // Shortens the timeout if the library's next alarm is due before.
    snmp_select_info(&count, &of_library, &timeout, &block);
    static std::vector<pollfd> watched;
    watched.assign(1, {.fd = descriptor, .events = events, .revents = 0});
    for (int each = 0; each < count; ++each) {
        if (FD_ISSET(each, &of_library))
            watched.push_back({.fd = each, .events = POLLIN, .revents = 0});
    }
    const timespec limit{.tv_sec = timeout.tv_sec, .tv_nsec = timeout.tv_usec * 1000};
    const int ready = ppoll(watched.data(), watched.size(), &limit, nullptr);
    if (ready < 0 && errno != EINTR)  // must not spin
        ClockSleepMicroseconds(std::min(timeout_us, kMillisecondUs));
    return ready > 0 && watched.front().revents != 0;
}

void agent_shutdown() {
    snmp_shutdown(kAgentApplication);
}

void agent_oid_text(int col_id, char* text, unsigned long size) {
    snprint_objid(text, size, cols[col_id].oid_ptr, cols[col_id].oid_len);
}
