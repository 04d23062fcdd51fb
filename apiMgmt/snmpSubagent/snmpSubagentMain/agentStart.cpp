#include "apiMgmt/snmpSubagent/snmpSubagentMain/agentStart.h"

#include <string>

#include "apiMgmt/common/platform/clock.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/masterAgent.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/serviceWait.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/agentAddress.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/agentLibrary.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/registration.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/serviceWindow.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

namespace {

constexpr int kSessionWaitSeconds = 20;
constexpr int kSelfTestPasses = 2000;

bool start_master() {
    kill_snmpd();
    if (start_snmpd() != 0) {
        SUBAGENT_LOG(warning, "could not start_snmpd()\n");
        return false;
    }
    SUBAGENT_LOG(debug, "start of snmpd is successful()\n");
    return true;
}

bool build_store() {
    SUBAGENT_LOG(debug, "initialize vars array...\n");
    if (init_all_oids() != 0)
        return false;
    SUBAGENT_LOG(debug, "total_vars: %d\n", total_vars);
    return true;
}

// The rows of the controller tables decide which parent a component row belongs to, so they are fetched
// first.
int fetch_controllers() {
    return force_get_table_info(COLID_tsCtlrNbr, false);
}

bool fill_store() {
    return run_start_steps({
        {"forcing a Get for the controller table...\n", fetch_controllers,
         "error on getting info from api for controller table\n"},
        {"forcing a Get for all the oids...\n", force_get_table_info_all,
         "error on getting all other info from api\n"},
    });
}

// Only a check: without the address no notification can be sent, so start-up fails.
bool has_agent_address() {
    std::string address;
    bool is_leader = false;
    bool is_ipv4 = false;
    if (get_array_ip_addr(&address, &is_leader, &is_ipv4) == 0)
        return true;
    SUBAGENT_LOG(warning, "Unable to get a non-zero IPAddr from the TS API\n");
    return false;
}

bool start_agent_library() {
    if (!run_start_steps({{"initialize the agent library...\n", agent_init, "could not init_agent()\n"}}))
        return false;
    SUBAGENT_LOG(debug, "init_snmp()...\n");
    agent_init_snmp();
    return true;
}

bool wait_for_main_session() {
    SUBAGENT_LOG(debug, "waiting for main_seesion...\n");
    ClockSleepMicroseconds(kSecondUs);
    if (agent_has_main_session())
        return true;
    SUBAGENT_LOG(warning, "no main_session, calling agent_check_and_process() to see if we can kick-start\n");
    for (int countdown = kSessionWaitSeconds;;) {
        process_agent_events();
        SUBAGENT_LOG(debug, "waiting for main_session: countdown:%2d\n", countdown);
        if (agent_has_main_session()) {
            SUBAGENT_LOG(warning, "main_session started, after waiting %d sec\n",
                         kSessionWaitSeconds - countdown);
            return true;
        }
        if (--countdown == 0) {
            SUBAGENT_LOG(warning, "Error: timeout waiting for main_session\n");
            return false;
        }
        ClockSleepMicroseconds(kSecondUs);
    }
}

bool register_and_ping() {
    return run_start_steps({
        {"registering lumivant subtree...\n", register_subtree, "error on registering subtree\n"},
        {"registering sysvars...\n", register_all_sysvars, "error on registering sysvars\n"},
        {"doing ping_agentx_master()...\n", ping_agentx_master, "error on initial agentx ping.\n"},
    });
}

// Fetches the value from the array once more, then reads it through snmpd with a real snmpget.
bool test_chain() {
    SUBAGENT_LOG(debug, "testing snmp-GET...\n");
    variable_entry& self_test = vars[cols[COLID_selfTestVersion].first_var];
    self_test.str.clear();
    const column_record& controllers = cols[COLID_tsCtlrNbr];
    if (controllers.get_fn(controllers.head_var, false) != 0 || self_test.str.empty()) {
        SUBAGENT_LOG(warning, "ERROR: couldn't get self-test oid.\n");
        return false;
    }
    self_test.flags &= static_cast<uint8_t>(~VAR_FLAG_delivered);
    if (exec_snmpget() != 0)
        return false;
    for (int pass = 0; pass < kSelfTestPasses; ++pass) {
        ClockSleepMicroseconds(kMillisecondUs);
        process_agent_events();
        if ((self_test.flags & VAR_FLAG_delivered) != 0)
            return true;
    }
    SUBAGENT_LOG(warning, "ERROR: timed out waiting to receive snmp-GET of self-test oid.\n");
    return false;
}

}  // namespace

int start_snmp_agent_and_subagent() {
    if (!start_master())
        return 1;
    agent_become_subagent();
    // The store is filled before the first request can arrive.
    const bool is_up = build_store() && fill_store() && has_agent_address() && start_agent_library() &&
                       wait_for_main_session() && register_and_ping() && test_chain();
    return is_up ? 0 : 1;
}

bool run_start_steps(std::initializer_list<start_step> steps) {
    for (const start_step& step : steps) {
        SUBAGENT_LOG(debug, "%s", step.progress);
        if (step.run() != 0) {
            SUBAGENT_LOG(warning, "%s", step.failure);
            return false;
        }
    }
    return true;
}
