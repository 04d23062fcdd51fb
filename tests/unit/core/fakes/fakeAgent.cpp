#include "tests/unit/core/fakes/fakeAgent.h"

#include <poll.h>

#include <cerrno>
#include <cstdio>

#include "apiMgmt/common/platform/process.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/shellCommand.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/agentLibrary.h"
#include "tests/unit/core/fakes/fakeClock.h"
#include "tests/unit/core/fakes/transcript.h"

namespace fake_agent {

int init_result = 0;
bool has_main_session = true;
int ping_result = 1;
std::function<int()> on_check;
std::function<const char*(const std::string&)> output_of;
std::function<void()> on_start;
int fork_error = 0;
int exec_error = 0;

}  // namespace fake_agent

void agent_log_to_stderr() {
    transcript::add("agent log_to_stderr");
}
void init_trap_session() {
    transcript::add("agent init_trap_session");
}
void end_trap_session() {
    transcript::add("agent close_trap_session");
}
void agent_become_subagent() {
    transcript::add("agent become_subagent");
}
void agent_init_snmp() {
    transcript::add("agent init_snmp");
}
void agent_shutdown() {
    transcript::add("agent shutdown");
}

int agent_init() {
    transcript::add("agent init");
    return fake_agent::init_result;
}

bool agent_has_main_session() {
    return fake_agent::has_main_session;
}

int agent_send_ping() {
    transcript::add("agent ping");
    return fake_agent::ping_result;
}

int agent_check() {
    transcript::add("agent check");
    return fake_agent::on_check ? fake_agent::on_check() : 0;
}

bool agent_wait(int64_t timeout_us, int descriptor, short events) {
    pollfd watched{.fd = descriptor, .events = events, .revents = 0};
    if (poll(&watched, 1, 0) > 0)
        return true;
    fake_clock::pass("wait", timeout_us);
    return false;
}

void agent_oid_text(int col_id, char* text, unsigned long size) {
    snprintf(text, size, "OID-OF-%d", col_id);
}

// A real pipe, because its owner closes it with pclose. It only runs cat.
command_output open_command(const std::string& command) {
    transcript::add("open " + command);
    const char* output = fake_agent::output_of ? fake_agent::output_of(command) : "";
    if (output == nullptr) {
        errno = EAGAIN;
        return nullptr;
    }
    command_output pipe(popen(("cat <<'END'\n" + std::string(output) + "END\n").c_str(), "r"));
    pollfd watched{.fd = fileno(pipe.get()), .events = POLLIN, .revents = 0};
    poll(&watched, 1, -1);  // so that the reader does not wait
    return pipe;
}

int run_command(const std::string& command) {
    transcript::add("run " + command);
    return 0;
}

std::string shell_word(const std::string& text) {
    return "[" + text + "]";
}

StartFailure StartDetachedProgram(const char* path, char* const argv[], char* const*) {
    std::string line = std::string("start ") + path;
    for (; *argv != nullptr; ++argv)
        line += std::string("|") + *argv;
    transcript::add(line);
    if (fake_agent::on_start)
        fake_agent::on_start();
    if (fake_agent::fork_error != 0)
        return {StartFailure::Step::fork, fake_agent::fork_error};
    if (fake_agent::exec_error != 0)
        return {StartFailure::Step::exec, fake_agent::exec_error};
    return {};
}

int MaximumProcessId() {
    return 99999;
}
const char* const kKillallOutput = " 2>&1";
void NameThisThread(const char*) {}
