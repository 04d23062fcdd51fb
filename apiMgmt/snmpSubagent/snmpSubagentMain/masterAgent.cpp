#include "apiMgmt/snmpSubagent/snmpSubagentMain/masterAgent.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "apiMgmt/common/platform/clock.h"
#include "apiMgmt/common/platform/process.h"
#include "apiMgmt/common/utils/pathConstants.h"
#include "apiMgmt/snmpSubagent/snmpSubagentComm/snmpSubagentComm.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/masterAgentState.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/serviceWait.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/settings/subagentConf.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/shellCommand.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/agentLibrary.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

int snmpd_pid = -1;

namespace {

constexpr int64_t kShortSleepUs = 10 * kMillisecondUs;
constexpr int kPidFileTries = 11;
constexpr int kPsWait_ms = 1000;  // for the first output; reading the rest blocks service
constexpr int kMemoryLimitKb = 50000;
constexpr size_t kOidTextSize = 191;

const char* const snmpdArgs[] = {kSnmpdProgram,   "-c", kSnmpdConfigFile, "-p", kSnmpdPidFile, "-LS 5d",
                                 "-Lf /dev/null", "-u", "daemon",         "-r", nullptr};

StartFailure run_snmpd() {
    const char* folder = getenv("SNMP_PERSISTENT_DIR");
    const bool is_engine_kept = folder != nullptr && keep_snmp_engine(folder);
    std::vector<std::string> environment = snmpd_environment(is_engine_kept ? folder : "");
    std::vector<char*> entries;
    for (std::string& entry : environment)
        entries.push_back(entry.data());
    entries.push_back(nullptr);
    return StartDetachedProgram(kSnmpdProgram, const_cast<char* const*>(snmpdArgs), entries.data());
}

// Reads up to 10 bytes into the zeroed buffer. Returns a negative number on error.
ssize_t read_pid_text(int descriptor, char (&text)[11]) {
    memset(text, 0, sizeof text);
    return read(descriptor, text, sizeof text - 1);
}

int open_pid_file(const char* path) {
    for (int tries = 1;; ++tries) {
        const int descriptor = open(path, O_RDONLY | O_CLOEXEC);
        if (descriptor >= 0 || tries == kPidFileTries)
            return descriptor;
        SUBAGENT_LOG(debug, "Retry opening file: %s.\n", path);
        ClockSleepMicroseconds(kShortSleepUs);
    }
}

int pid_from_open_file(int descriptor, const char* path) {
    char temp_buf[11];
    ssize_t count = read_pid_text(descriptor, temp_buf);
    // snmpd has created the file but not written it yet.
    if (count == 0) {
        SUBAGENT_LOG(warning, "PID file read was zero, so we'll sleep and then try it one more time\n");
        ClockSleepMicroseconds(kSecondUs);
        count = read_pid_text(descriptor, temp_buf);
    }
    if (count < 0) {
        SUBAGENT_LOG(warning, "Unable to read file: %s\n", path);
        return -1;
    }
    if (count < 1 || count > 9) {
        SUBAGENT_LOG(warning, "PID file read has invalid byte count: %d, temp_buf: %s\n",
                     static_cast<int>(count), temp_buf);
        return -1;
    }
    const int pid = atoi(temp_buf);
    if (pid < 1 || pid > MaximumProcessId()) {
        SUBAGENT_LOG(warning, "invalid PID in pid file: %d, temp_buf: %s\n", pid, temp_buf);
        return -1;
    }
    return pid;
}

void log_output(FILE* output) {
    char line[100];
    while (fgets(line, sizeof line, output) != nullptr)
        SUBAGENT_LOG(debug, "    %s", line);
}

std::string killall_command(int signal_number) {
    return std::string(kKillallProgram) + " -" + std::to_string(signal_number) + " -v snmpd" + kKillallOutput;
}

// Returns whether the data line of ps (process ID and resident size) matches snmpd_pid and is within the
// limit.
bool shows_sane_memory(const char* ps_output) {
    char copy[200];
    snprintf(copy, sizeof copy, "%s", ps_output);
    char* rest = nullptr;
    const char* pid = strtok_r(copy, " \n", &rest);
    if (pid == nullptr) {
        SUBAGENT_LOG(warning, "found no space-separated tokens: %s, snmpd_pid: %d\n", ps_output, snmpd_pid);
        return false;
    }
    if (atoi(pid) != snmpd_pid) {
        SUBAGENT_LOG(warning, "1st token did not match: ps_output: %s: snmpd_pid: %d\n", ps_output,
                     snmpd_pid);
        return false;
    }
    const char* rss = strtok_r(nullptr, " \n", &rest);
    if (rss == nullptr) {
        SUBAGENT_LOG(warning, "found no 2nd token: %s, snmpd_pid: %d\n", ps_output, snmpd_pid);
        return false;
    }
    const int resident_kb = atoi(rss);
    if (resident_kb <= 0) {
        SUBAGENT_LOG(warning, "failed to find res mem usage: %s, snmpd_pid: %d\n", ps_output, snmpd_pid);
        return false;
    }
    if (resident_kb > kMemoryLimitKb) {
        SUBAGENT_LOG(warning, "snmpd mem usage too high: %d\n", resident_kb);
        return false;
    }
    return true;
}

// Built on first use: later changes of the community have no effect.
const std::string& self_test_command() {
    static const std::string command = [] {
        char oid_text[kOidTextSize];
        agent_oid_text(COLID_selfTestVersion, oid_text, sizeof oid_text);
        return std::string(kSnmpgetProgram) + " -r 0 -v2c -c " + shell_word(self_test_community()) +
               " localhost " + oid_text + ".0 &";
    }();
    return command;
}

}  // namespace

int read_pid_file(const char* path) {
    const int descriptor = open_pid_file(path);
    if (descriptor < 0) {
        SUBAGENT_LOG(warning, "Unable to open file: %s\n", path);
        return -1;
    }
    const int pid = pid_from_open_file(descriptor, path);
    close(descriptor);
    return pid;
}

int start_snmpd() {
    unlink(kSnmpdPidFile);
    snmpd_pid = -1;
    const StartFailure failure = run_snmpd();
    if (failure.step == StartFailure::Step::fork) {
        SUBAGENT_LOG(warning, "error on rfork(): errno=%d \n", failure.error_number);
        return 1;
    }
    // The child has no descriptor to log with, so its failure is logged here.
    if (failure.step == StartFailure::Step::exec) {
        SUBAGENT_LOG(warning, "***** child failed execv(snmpdArgs...) errno=%d\n", failure.error_number);
        SUBAGENT_LOG(warning, "***** child _exit(-1)\n");
    }
    ClockSleepMicroseconds(kShortSleepUs);
    snmpd_pid = read_pid_file(kSnmpdPidFile);
    if (snmpd_pid == -1) {
        SUBAGENT_LOG(warning, "Unable to read_pid_file()\n");
        return 1;
    }
    return 0;
}

void kill_snmpd() {
    SUBAGENT_LOG(debug, "calling popen() for killall -6...\n");
    command_output output = open_command(killall_command(6));
    if (!output) {
        SUBAGENT_LOG(warning, "failed to popen for killall -6: errno: %d\n", errno);
        ClockSleepMicroseconds(kShortSleepUs);
        return;
    }
    SUBAGENT_LOG(debug, "output from killall -6:\n");
    log_output(output.get());
    output.reset();
    ClockSleepMicroseconds(kShortSleepUs);

    SUBAGENT_LOG(debug, "calling popen() for killall -9...\n");
    output = open_command(killall_command(9));
    if (output) {
        SUBAGENT_LOG(debug, "output from killall -9:\n");
        log_output(output.get());
        output.reset();
    } else {
        SUBAGENT_LOG(warning, "failed to popen for killall -9: errno: %d\n", errno);
    }
    ClockSleepMicroseconds(kShortSleepUs);
}

bool snmpd_using_too_much_mem() {
    if (snmpd_pid == -1)
        return true;
    const command_output output =
        open_command(std::string(kPsProgram) + " -o pid,rss " + std::to_string(snmpd_pid));
    if (!output) {
        SUBAGENT_LOG(warning, "failed to popen: errno: %d\n", errno);
        return true;
    }
    wait_and_serve(fileno(output.get()), POLLIN, kPsWait_ms);
    char ps_output[200] = "";
    if (fgets(ps_output, sizeof ps_output, output.get()) == nullptr ||
        fgets(ps_output, sizeof ps_output, output.get()) == nullptr) {
        SUBAGENT_LOG(warning, "no 1st or 2nd line of output from ps command: %s\n", ps_output);
        return true;
    }
    return !shows_sane_memory(ps_output);
}

int exec_snmpget() {
    // The command ends with an ampersand, so the shell returns immediately and snmpget continues to run.
    if (!open_command(self_test_command())) {
        SUBAGENT_LOG(warning, "failed popen(): args: %s\n", self_test_command().c_str());
        return 1;
    }
    return 0;
}

int check_snmpget() {
    variable_entry& self_test = vars[cols[COLID_selfTestVersion].first_var];
    if ((self_test.flags & VAR_FLAG_delivered) == 0) {
        SUBAGENT_LOG(warning, "Did not get results from previous execute of snmpget of self-test oid\n");
        snmpSubagentComm->set_agentx_state(false);
        return 1;
    }
    self_test.flags &= static_cast<uint8_t>(~VAR_FLAG_delivered);
    if (exec_snmpget() != 0) {
        snmpSubagentComm->set_agentx_state(false);
        return 1;
    }
    return 0;
}

int ping_agentx_master() {
    if (!agent_has_main_session()) {
        SUBAGENT_LOG(warning, "main_session is NULL\n");
        snmpSubagentComm->set_agentx_state(false);
        return 1;
    }
    const bool answered = agent_send_ping() != 0;
    if (!answered)
        SUBAGENT_LOG(warning, "Error on ping to master agent\n");
    snmpSubagentComm->set_agentx_state(answered);
    return answered ? 0 : 1;
}
