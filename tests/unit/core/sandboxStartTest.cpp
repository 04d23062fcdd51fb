// Start-up and shutdown of the daemon and of the master agent, by transcript. They use pid files at fixed
// paths and bind a port, so this runs only in the sandbox. Each start runs in a separate process.

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>

#include "apiMgmt/common/platform/clock.h"
#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/common/utils/version.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/agentStart.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/backgroundUpdate.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/masterAgent.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/processState.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/signals.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/startUp.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/serviceWindow.h"
#include "tests/unit/core/fakes/fakeAgent.h"
#include "tests/unit/core/fakes/mibWorld.h"

namespace {

using std::string;

// Runs `work` in a child process, so that every start begins with fresh state. Returns its result.
string in_child(const std::function<string()>& work) {
    int channel[2];
    EXPECT_EQ(pipe(channel), 0);
    const pid_t child = fork();
    if (child == 0) {
        const string text = work();
        const ssize_t written = write(channel[1], text.data(), text.size());
        _exit(written == static_cast<ssize_t>(text.size()) ? 0 : 1);
    }
    close(channel[1]);
    string text;
    char part[4096];
    for (ssize_t count; (count = read(channel[0], part, sizeof part)) > 0;)
        text.append(part, static_cast<size_t>(count));
    close(channel[0]);
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    return text;
}

void write_file(const string& path, const string& text) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path) << text;
}

// An array with the objects that start-up needs, and a master agent that responds.
void prepare_world() {
    const std::pair<const char*, const char*> objects[] = {
        {"TsController",
         "<tsController><Index>1</Index><Status>Up</Status><Version>6.5.2.12</Version>"
         "<IpAddress>10.0.0.1</IpAddress></tsController>"},
        {"TsDisk", "<tsDisk><Status>Up</Status></tsDisk>"},
        {"TsControllerTemperatureSensor",
         "<tsControllerTemperatureSensor><ControllerIndex>1</ControllerIndex><Status>Up</Status>"
         "</tsControllerTemperatureSensor>"},
        {"TsDiskFolder", "<tsDiskFolder><Status>Up</Status><Index>1</Index></tsDiskFolder>"},
        {"TsControllerCacheCard", "<tsControllerCacheCard><Status>Up</Status></tsControllerCacheCard>"},
        {"Tessera", "<Tessera><Status>Up</Status></Tessera>"},
        {"TsObjectCount", "<tsObjectCount/>"},
    };
    for (const auto& [name, content] : objects)
        fake_api_mgr::documents[string("GetList ") + name] = fake_api_mgr::list_answer(content);
    fake_agent::on_start = [] { write_file("/var/run/snmpd.pid", "4711\n"); };
}

void deliver_self_test() {
    vars[COLID_selfTestVersion].flags |= VAR_FLAG_delivered;
}

// ---- the master agent ----

const char* const kFetches =
    "api GetList TsController\napi GetList TsController\napi GetList TsDisk\napi GetList TsEnclosure\n"
    "api GetList TsControllerFanSensor\napi GetList TsControllerPowerSupply\n"
    "api GetList TsControllerVoltageSensor\napi GetList TsControllerTemperatureSensor\n"
    "api GetList TsEnclosureCoolingFanSensor\napi GetList TsEnclosurePowerSupply\n"
    "api GetList TsEnclosureIoModule\napi GetList TsEnclosureTemperatureSensor\n"
    "api GetList TsEnclosureAudibleAlarm\napi GetList TsDiskFolder\napi GetList TsVolume\napi GetList "
    "TsServer\n"
    "api GetList TsControllerCacheCard\napi GetList Tessera\napi GetList TsUps\napi GetList TsObjectCount\n"
    "api GetList TsDiskConfiguration\n"
    "log 4 could not get table info for tsDiskConfig: perhaps there are no pagepools$\napi GetList TsAlert\n";
const string kKills =
    "open /usr/bin/killall -6 -v snmpd 2>&1\nsleep 10000 us\nopen /usr/bin/killall -9 -v snmpd 2>&1\n"
    "sleep 10000 us\n";
const string kStartOfSnmpd =
    kKills +
    "start /usr/local/sbin/snmpd|/usr/local/sbin/snmpd|-c|/etc/snmpd.conf|-p|/var/run/snmpd.pid|"
    "-LS 5d|-Lf /dev/null|-u|daemon|-r\nsleep 10000 us\n";
const char* const kLibrary = "agent init\nagent init_snmp\nsleep 1000000 us\n";
const char* const kSnmpget = "open /usr/local/bin/snmpget -r 0 -v2c -c [public] localhost OID-OF-10.0 &\n";

// Starts the agents after `change` has changed the environment. Returns the transcript and the result.
string start_agents(const std::function<void()>& change) {
    return in_child([&] {
        prepare_world();
        snmpSubagentComm = new SnmpSubagentComm;
        build_api_request_prefix("KEY");
        mib_mutex.Lock();
        fake_clock::write_sleeps(true);
        change();
        const int result = start_snmp_agent_and_subagent();
        return transcript::take() + "result " + std::to_string(result);
    });
}

TEST(StartOfAgents, GivesUpAtTheFirstStepThatFails) {
    const auto no_answer = [](const char* request) { fake_api_mgr::documents[request] = "no document"; };
    const string unparsable = "log 4 error found while trying to parse ipXmlString: no document$\n";
    const std::pair<std::function<void()>, string> rows[] = {
        {[] { fake_agent::fork_error = 12; },
         "log 4 error on rfork(): errno=12 $\nlog 4 could not start_snmpd()$\n"},
        {[] {
             fake_agent::exec_error = 2;
             fake_agent::on_start = nullptr;
         },
         "log 4 Unable to open file: /var/run/snmpd.pid$\nlog 4 Unable to read_pid_file()$\n"
         "log 4 could not start_snmpd()$\n"},
        {[&] { no_answer("GetList TsController"); },
         unparsable + "log 4 error on getting info from api for controller table$\n"},
        {[&] { no_answer("GetList TsUps"); }, unparsable +
                                                  "log 4 could not get table info for col_id: 144$\n"
                                                  "log 4 error on getting all other info from api$\n"},
        {[] {
             fake_api_mgr::documents["GetList TsController"] = fake_api_mgr::list_answer(
                 "<tsController><Index>1</Index><Status>Up</Status><IpAddress>0.0.0.0</IpAddress></"
                 "tsController>");
         },
         "log 4 Unable to get a non-zero IPAddr from the TS API$\n"},
        {[] { fake_agent::init_result = -1; }, "agent init\nlog 4 could not init_agent()$\n"},
        {[] { fake_agent::has_main_session = false; },
         "agent check\nsleep 1000000 us\nagent check\nlog 4 Error: timeout waiting for main_session$\n"},
        {[] { fake_agent::ping_result = 0; },
         "agent ping\nlog 4 Error on ping to master agent$\nlog 4 error on initial agentx ping.$\n"},
        {[] {
             transcript::on("agent ping", [](const string&) {
                 fake_api_mgr::documents["GetList TsController"] = fake_api_mgr::list_answer(
                     "<tsController><Index>1</Index><Status>Up</Status><Version/></tsController>");
             });
         },
         "api GetList TsController\nlog 4 ERROR: couldn't get self-test oid.$\n"},
        {[] {
             fake_agent::output_of = [](const string& command) {
                 return command.find("snmpget") != string::npos ? nullptr : "";
             };
         },
         string(kSnmpget) + "log 4 failed popen(): args: " +
             string(kSnmpget).substr(5, string(kSnmpget).size() - 6) + "$\n"},
        {[] {},
         "sleep 1000 us\nagent check\nsleep 1000 us\nagent check\n"
         "log 4 ERROR: timed out waiting to receive snmp-GET of self-test oid.$\n"},
    };
    for (const auto& [change, each_end] : rows) {
        const string course = start_agents(change);
        const string end = each_end + "result 1";
        EXPECT_EQ(course.size() < end.size() ? course : course.substr(course.size() - end.size()), end);
    }
    // It waits 21 seconds in all for the session, and 2000 iterations for the self-test.
    const auto count = [](string text, const string& part) {
        const size_t size = text.size();
        ReplaceAll(text, part, "");
        return (size - text.size()) / part.size();
    };
    EXPECT_EQ(count(start_agents([] { fake_agent::has_main_session = false; }), "sleep 1000000 us\n"), 20U);
    EXPECT_EQ(count(start_agents([] {}), "agent check\n"), 2000U);
}

// ---- the daemon ----

// Runs the daemon in the foreground after `change` has changed the environment.
string run_daemon(const std::function<void()>& change) {
    std::filesystem::remove("/etc/snmpSubagent.conf");
    std::filesystem::create_directories("/mnt/root");
    write_file("/tmp/apps/snmpsubagent.conf", "isdebugmode = True\n");
    return in_child([&] {
        prepare_world();
        fake_clock::write_sleeps(true);
        bgUpdateLastFetch_us = INT64_MAX / 2;
        change();
        char program[] = "/usr/sbin/snmpSubagent";
        char option[] = "-x";
        char* arguments[] = {program, option, nullptr};
        const int status = run_subagent(2, arguments);
        return transcript::take() + "status " + std::to_string(status) + ", restart: " + restart_command;
    });
}

const string kFirstSteps =
    "redirect_stdout_to_log\nagent log_to_stderr\nlog 4 Unable to open file: /etc/snmpSubagent.conf$\n"
    "log 4 snmpSubagent is initializing...$\nlog 4 version " +
    string(kVersion) + "$\nagent init_trap_session\napi ping\napi GetList TsController\n";
const string kLastSteps =
    kKills +
    "agent shutdown\nagent close_trap_session\nlog 4 snmpSubagent is exiting.$\nclose_redirected_log\n"
    "status 0, restart: sleep 1; [/usr/sbin/snmpSubagent] [-x] &";

TEST(Daemon, StartsServesAndEnds) {
    const string course = run_daemon([] {
        fake_agent::on_check = [passes = 0]() mutable {
            deliver_self_test();
            if (++passes == 2) {
                transcript::add(std::filesystem::exists("/var/run/snmpSubagent.pid") ? "pid file"
                                                                                     : "no pid file");
                raise(SIGINT);
                raise(SIGTERM);
            }
            return 0;
        };
    });
    EXPECT_EQ(course,
              kFirstSteps + kStartOfSnmpd + "agent become_subagent\n" + kFetches + kLibrary +
                  "agent ping\napi GetList TsController\n" + kSnmpget +
                  "sleep 1000 us\nagent check\nlog 4 snmpSubagent is up and running.$\n"
                  "wait 10000 us\nreopen_redirected_log\ntruncate_subagent_log\n"
                  "open /bin/ps -o pid,rss 4711\nlog 4 no 1st or 2nd line of output from ps command: $\n" +
                  kKills +
                  "agent check\npid file\nlog 4 (((((((((((((((((( SIGTERM ))))))))))))))))))))$\n"
                  "log 4 (((((((((((((((((( SIGINT ))))))))))))))))))))$\n"
                  "log 4 popped out of main_loop: snmpSubagent_is_active=0, abort_snmpSubagent=0$\n" +
                  kLastSteps);
    EXPECT_FALSE(std::filesystem::exists("/var/run/snmpSubagent.pid"));
}

TEST(Daemon, EndsInOrderWhenAStepFails) {
    EXPECT_EQ(
        run_daemon([] { fake_api_mgr::refuse_connections(true); }),
        kFirstSteps.substr(0, kFirstSteps.find("api ping")) +
            "api refused\nlog 4 Exception: /tmp/apimgr.sock: nobody listens$\n"
            "log 4  ---- Can't connect to ApiMgr's socket ----$\nlog 4 Could not open socket to ApiMgr.$\n"
            "log 4 error on testing interface to apimgr.$\n" +
            kLastSteps);
    EXPECT_EQ(run_daemon([] { fake_agent::fork_error = 12; }),
              kFirstSteps + kStartOfSnmpd.substr(0, kStartOfSnmpd.rfind("sleep")) +
                  "log 4 error on rfork(): errno=12 $\nlog 4 could not start_snmpd()$\n"
                  "log 4 could not start_snmp_agent_and_subagent()$\n" +
                  kLastSteps);
    EXPECT_EQ(run_daemon([] { std::filesystem::remove_all("/mnt/root"); }),
              "log 4 Failed to daenmonize$\nlog 4 snmpSubagent is exiting.$\nclose_redirected_log\n"
              "status -1, restart: sleep 1; [/usr/sbin/snmpSubagent] [-x] &");
    const string without_key = run_daemon([] { fake_api_mgr::access_key = ""; });
    EXPECT_EQ(without_key, kFirstSteps.substr(0, kFirstSteps.find("agent init_trap_session")) +
                               "log 3 Error reading in the trusted session key$\n" + kLastSteps);
    EXPECT_EQ(run_daemon([] { write_file("/tmp/apps/snmpsubagent.conf", "# isdebugmode = 1\n"); }),
              "status 1, restart: ");
}

}  // namespace
