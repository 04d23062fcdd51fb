#include "apiMgmt/snmpSubagent/snmpSubagentMain/startUp.h"

#include <sys/stat.h>
#include <syslog.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <new>
#include <string>

#include "apiMgmt/common/threadpool/appLogger.h"
#include "apiMgmt/common/threadpool/appSysLogger.h"
#include "apiMgmt/common/threadpool/logTask.h"
#include "apiMgmt/common/utils/configFile.h"
#include "apiMgmt/common/utils/heartbeat/heartbeatMonitor.h"
#include "apiMgmt/common/utils/pathConstants.h"
#include "apiMgmt/common/utils/resourceMgmt.h"
#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/common/utils/version.h"
#include "apiMgmt/common/wirelink/wireLink.h"
#include "apiMgmt/snmpSubagent/snmpSubagentComm/snmpSubagentComm.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/agentStart.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/backgroundUpdate.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/mainLoop.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/masterAgent.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/mgmtMsgListener.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/processState.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/settings/subagentConf.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/shellCommand.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/signals.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/statusFile.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/supervisor.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/agentLibrary.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/requestHandler.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/serviceWindow.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/sendTrap.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapCommand.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapPdu.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapSession.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

namespace {

constexpr const char* kSyslogIdent = "snmpSubagent";
constexpr int kHeartbeatPort = 35003;

// Lives until exit, like snmpSubagentComm.
SnmpSubagentMibHandlers* snmpSubagentMibHandlers = nullptr;

// Parsing MIB files takes most of a second, and the daemon allows snmpd a tenth, so neither this process nor
// its child processes parse any. Configuration files of the agent library can load code, so none are read.
void set_environment() {
    setenv("MIBS", "", 1);
    setenv("SNMPCONFPATH", kNoConfigurationFiles, 1);
    // Resolving a host name in trapDest delays service; by default an unreachable name server takes 10
    // seconds.
    setenv("RES_OPTIONS", "timeout:1 attempts:2", 0);
}

std::string build_restart_command(int argc, char* argv[]) {
    std::string command = "sleep 1; ";
    for (int i = 0; i < argc; ++i)
        command.append(shell_word(argv[i])).append(" ");
    return command + "&";
}

bool start_heartbeat() {
    SUBAGENT_LOG(debug, "opening listening socket for heartbeat pings on port(%d)...\n", kHeartbeatPort);
    if (StartHeartbeatMonitor(kHeartbeatPort) == 0)
        return true;
    SUBAGENT_LOG(warning, "Failed to start listener for heartbeats, port : %d\n", kHeartbeatPort);
    return false;
}

// Logs only if a log task is registered, which is not the case this early in the daemon.
void report_missing_settings() {
    if (APPLogger::IsLogged(app_level::kError))
        APPLogger::Log(app_level::kError, __FILE_NAME__, __func__, __LINE__, "SnmpSubagent",
                       "Error reading in the SNMP Subagent config");
}

void report_other_copy() {
    fprintf(stderr, "snmpSubagent: another copy is running; stop it first\n");
    SUBAGENT_LOG(warning,
                 "another copy is running and did not exit within 5 seconds; exiting without touching it\n");
}

// Lives until exit. If its thread cannot be started, only the subagent log remains.
void create_application_log(const char* program, bool is_debug_mode) {
    auto task = std::make_unique<LOGTask>(std::make_unique<APPSysLogger>(program, is_debug_mode));
    if (APPLogger::RegisterLogTask(task.get()))
        (void)task.release();
    APPLogger::SetLogLevel(is_debug_mode ? app_level::kDebug : app_level::kWarning);
}

void open_logs(const char* program, bool is_debug_mode) {
    openlog(kSyslogIdent, LOG_CONS, LOG_DAEMON);
    create_application_log(program, is_debug_mode);
    if (is_debug_mode)
        redirect_stdout_to_log();
    agent_log_to_stderr();
}

void read_settings() {
    // If the file is missing, start-up continues with the initial values.
    read_snmpSubagent_conf();
    SUBAGENT_LOG(debug, "\n\n++++++++++++++++ main last compiled: %s, %s ++++++++++++++++\n", __DATE__,
                 __TIME__);
    SUBAGENT_LOG(warning, "snmpSubagent is initializing...\n");
    SUBAGENT_LOG(warning, "version %s\n", kVersion);
}

bool fetch_session_key() {
    const std::string key = WireLinkEndpoint::GetAccessKey();
    if (key.empty()) {
        SUBAGENT_LOG(error, "Error reading in the trusted session key\n");
        return false;
    }
    SUBAGENT_LOG(debug, "trustedsessionkey: %s\n", key.c_str());
    build_api_request_prefix(key);
    return true;
}

bool create_objects() {
    snmpSubagentComm = new (std::nothrow) SnmpSubagentComm;
    if (snmpSubagentComm == nullptr) {
        SUBAGENT_LOG(warning, "Could not get new SnmpSubagentComm.\n");
        return false;
    }
    snmpSubagentMibHandlers = new (std::nothrow) SnmpSubagentMibHandlers;
    if (snmpSubagentMibHandlers == nullptr) {
        SUBAGENT_LOG(warning, "Could not get new SnmpSubagentMibHandlers.\n");
        return false;
    }
    return true;
}

bool start_work() {
    init_varbindings();
    return run_start_steps({
        {"opening listening socket for mgmt msgs...\n", StartMgmtMsgListener,
         "Failed to start listener for mgmt msgs\n"},
        {"starting task to watch for GetList work...\n", StartGetListTask, "Failed to start GetListTask\n"},
        {"testing apimgr...\n", test_apimgr, "error on testing interface to apimgr.\n"},
        {"starting agent and subgagent...\n", start_snmp_agent_and_subagent,
         "could not start_snmp_agent_and_subagent()\n"},
    });
}

// All steps between daemonising and the main loop. Returns false after logging the step that failed.
bool start_services(const char* program, bool is_debug_mode) {
    if (!start_heartbeat())
        return false;
    open_logs(program, is_debug_mode);
    read_settings();
    if (!fetch_session_key())
        return false;
    SUBAGENT_LOG(debug, "calling snmp_sess_init()...\n");
    init_trap_session();
    install_signal_handlers();
    return create_objects() && start_work();
}

// A slow array at start-up must not trigger the supervisor's watchdog.
bool wait_for_array_at_start(int descriptor, short events, int timeout_ms) {
    constexpr int kBetweenSigns_ms = 2000;
    feed_watchdog();
    return PollDescriptor(descriptor, events, std::min(timeout_ms, kBetweenSigns_ms));
}

void shut_down_agents() {
    SUBAGENT_LOG(debug, "snmpd (master agent) is being killed...\n");
    kill_snmpd();
    SUBAGENT_LOG(debug, "snmpSubagent is being shutdown...\n");
    agent_shutdown();
    end_trap_session();
}

int finish(int status) {
    log_caught_signals();
    ShutdownSelf(DAEMON_ID_SNMP_SUBAGENT);
    SUBAGENT_LOG(warning, "snmpSubagent is exiting.\n");
    close_redirected_log();
    return status;
}

}  // namespace

int run_subagent(int argc, char* argv[]) {
    const std::map<std::string, std::string> settings = ReadConfigFile(kStartConfigFile);
    if (settings.empty()) {
        report_missing_settings();
        return 1;
    }
    const auto debug_mode = settings.find("isdebugmode");
    const bool is_debug_mode = debug_mode != settings.end() && ParseBool(debug_mode->second);

    // Must be done before anything that affects the other copy.
    if (!WaitForOtherCopy(DAEMON_ID_SNMP_SUBAGENT)) {
        report_other_copy();
        return 1;
    }

    mib_mutex.Lock();
    set_environment();
    restart_command = build_restart_command(argc, argv);

    int own_pid = 0;
    int parent_pid = 0;
    if (DaemonizeSelf(DAEMON_ID_SNMP_SUBAGENT, &own_pid, &parent_pid, is_debug_mode) != 0) {
        SUBAGENT_LOG(warning, "Failed to daenmonize\n");
        return finish(-1);
    }
    // Child processes inherit it. Nobody else may access the files that they create, above all snmpd's AgentX
    // socket.
    umask(S_IRWXG | S_IRWXO);
    open_supervisor_channel();
    set_exchange_wait(wait_for_array_at_start);
    if (start_services(argc > 0 ? argv[0] : kSyslogIdent, is_debug_mode)) {
        SUBAGENT_LOG(warning, "snmpSubagent is up and running.\n");
        set_supervisor_status("serving");
        send_coldstart();
        snmpSubagent_is_active = true;  // starts the GetList task's work
        open_status_file(kStatusFile);
        main_loop();
        close_status_file();
    }
    shut_down_agents();
    return finish(0);
}
