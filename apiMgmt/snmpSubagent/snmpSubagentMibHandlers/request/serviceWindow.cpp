#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/serviceWindow.h"

#include <algorithm>
#include <vector>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/agentLibrary.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/requestContext.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/requestPace.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

// Never destroyed, because the main thread still holds it when the process exits.
MUTEXWrapper& mib_mutex = *new MUTEXWrapper;

int permission_to_process_pdu = 0;
int pdu_failures = 0;

namespace {

constexpr int kPdusPerTick = 10;
constexpr int kMaximumFailures = 4;

struct pdu_of_tick {
    const netsnmp_agent_session* session = nullptr;
    int failures_before = 0;
    bool has_failed = false;
    std::vector<const netsnmp_variable_list*> ended;  // bindings at the end of the view, in this tick

    bool has_ended(const netsnmp_variable_list* binding) const {
        return std::find(ended.begin(), ended.end(), binding) != ended.end();
    }
};
pdu_of_tick current_pdu;

}  // namespace

bool process_agent_events() {
    begin_agent_tick();
    mib_mutex.Unlock();
    const int handled = agent_check();
    mib_mutex.Lock();
    end_agent_tick();
    if (handled <= 0)
        note_no_request_waits();
    return handled > 0;
}

void begin_agent_tick() {
    permission_to_process_pdu = kPdusPerTick;
    current_pdu = {};
}

void end_agent_tick() {
    permission_to_process_pdu = 0;
    current_pdu = {};
}

bool admit_pdu(const netsnmp_agent_request_info* info) {
    if (current_pdu.session != nullptr && current_pdu.session == info->asp)
        return true;
    if (!keep_request_pace(info->asp->pdu->variables) || permission_to_process_pdu <= 0)
        return false;
    --permission_to_process_pdu;
    current_pdu = {info->asp, pdu_failures, false, {}};
    return true;
}

void count_success() {
    if (!current_pdu.has_failed)
        pdu_failures = 0;
}

void count_failure() {
    if (!current_pdu.has_failed)
        pdu_failures = current_pdu.failures_before + 1;
    current_pdu.has_failed = true;
    if (pdu_failures <= kMaximumFailures)
        return;
    permission_to_process_pdu = 0;
    pdu_failures = 0;
    SUBAGENT_LOG(debug, "taking away permission_to_process_pdu\n");
}

void note_end_of_view(const netsnmp_variable_list* binding) {
    current_pdu.ended.push_back(binding);
}

bool follows_end_of_view(const netsnmp_variable_list* binding) {
    return current_pdu.has_ended(binding) || (last_resp_was_endofmibview && current_pdu.ended.empty());
}
