#include "apiMgmt/snmpSubagent/snmpSubagentMain/mainLoop.h"

#include <csignal>

#include "apiMgmt/common/platform/clock.h"
#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/backgroundUpdate.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/masterAgent.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/processState.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/settings/subagentConf.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/signals.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/requestHandler.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/serviceWindow.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/outstandingTraps.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapQueue.h"
#include "tests/unit/core/fakes/fakeAgent.h"
#include "tests/unit/core/fakes/mibWorld.h"

namespace {

using std::string;

const char* const kSnmpget = "open /usr/local/bin/snmpget -r 0 -v2c -c [public] localhost OID-OF-10.0 &\n";
const char* const kPs = "open /bin/ps -o pid,rss 4711\n";
const char* const kSigterm = "log 4 (((((((((((((((((( SIGTERM ))))))))))))))))))))$\n";
const char* const kPopped =
    "log 4 popped out of main_loop: snmpSubagent_is_active=0, abort_snmpSubagent=0$\n";
const char* const kRestart =
    "log 4 main-session down, or error on agentx-ping, or failed self-test: will try a restart...$\n"
    "run (sleep 1; daemon &) &\n";

// Everything works and has just been checked. No table is refreshed unless a test requests it.
class MainLoop : public MibWorld {
  protected:
    MainLoop() {
        mib_mutex.Lock();
        verbose = false;
        restart_command = "sleep 1; daemon &";
        bgUpdateLastFetch_us = INT64_MAX / 2;
        see_all_well();
        snmpd_pid = 4711;
        fake_agent::output_of = [this](const string& command) {
            return command.rfind("/bin/ps", 0) == 0 ? ps_output.c_str() : "";
        };
        fake_clock::write_sleeps(true);
    }

    string ps_output = "  PID   RSS\n 4711  5000\n";

    static void see_all_well() {
        snmpSubagent_is_active = true;
        fake_agent::has_main_session = true;
        fake_agent::ping_result = 1;
        fake_api_mgr::refuse_connections(false);
        snmpSubagentComm->set_apimgr_state(true);
        snmpSubagentComm->set_agentx_state(true);
        last_mem_check_time_us = ClockNowUs();
        vars[COLID_selfTestVersion].flags |= VAR_FLAG_delivered;
    }

    /** The input at the end of each iteration; SIGTERM in the last one. */
    void at_checks(std::vector<std::function<int()>> steps) {
        fake_agent::on_check = [steps, pass = size_t{0}]() mutable {
            const size_t step = pass++;
            if (step + 1 >= steps.size())
                catch_sigterm(SIGTERM);
            return steps.at(step)();
        };
    }

    /** Runs the loop to its end. Returns its result and the transcript without checks of the log file. */
    static string run() {
        const int result = main_loop();
        string lines = transcript::take();
        for (const char* care : {"reopen_redirected_log\n", "truncate_subagent_log\n"})
            ReplaceAll(lines, care, "");
        string strike;  // requests are served in it
        for (int i = 0; i < 150; ++i)
            strike += "wait 100000 us\nagent check\n";
        ReplaceAll(lines, strike, "serve 15 s\n");
        return lines + "result " + std::to_string(result);
    }
};

int nothing() {
    return 0;
}

TEST_F(MainLoop, GoesThroughAPassInOrder) {
    verbose = true;
    bgUpdateLastFetch_us = 0;
    tempTest_requested = true;
    fake_clock::advance(3'000'000);
    const auto window = [] {
        EXPECT_EQ(permission_to_process_pdu, 10);
        EXPECT_EQ(mib_mutex.TryLock(), 0);
        mib_mutex.Unlock();
        return 0;
    };
    at_checks({window, window});
    cols[0].get_fn = [](int32_t, bool) {
        transcript::add("refresh 0");
        return 0;
    };
    EXPECT_EQ(main_loop(), 0);
    EXPECT_EQ(
        transcript::take(),
        string("wait 10000 us\nrefresh 0\nlog 4 liteObjEnabled toggled to false$\nreopen_redirected_log\n"
               "truncate_subagent_log\napi GetList TsController\nagent check\nagent ping\n") +
            kSnmpget + kPs + "agent check\n" + kSigterm + kPopped + "log 7 exiting main_loop$\n");
    EXPECT_EQ(permission_to_process_pdu, 0);
    EXPECT_NE(mib_mutex.TryLock(), 0);
    EXPECT_EQ(last_mem_check_time_us, ClockNowUs());
}

TEST_F(MainLoop, ServesWhatHasArrivedAndGoesOnAfterTenMilliseconds) {
    const auto slow_request = [] {
        fake_clock::advance(6'000);
        return 1;
    };
    at_checks({nothing, [] { return 1; }, [] { return 3; }, [] { return -1; }, slow_request, slow_request,
               nothing});
    EXPECT_EQ(run(),
              string("wait 10000 us\nagent check\nwait 10000 us\nagent check\nagent check\nagent check\n"
                     "wait 10000 us\nagent check\nagent check\nwait 10000 us\nagent check\n") +
                  kSigterm + kPopped + "result 0");
}

void queue_unknown(int32_t number) {
    auto trap = std::make_unique<TrapToSend>();
    trap->trapNum = number;
    queue_trap(std::move(trap));
}

string refusal(int32_t number) {
    return "log 4 unknown trapNum passed fron lumivant-app: " + std::to_string(number) + "$\n";
}

TEST_F(MainLoop, ServesOneEventAPass) {
    queue_unknown(901);
    queue_unknown(902);
    queue_unknown(903);
    displayTraps_requested = true;
    sendTestTrap = true;
    at_checks({nothing, nothing, nothing, nothing});
    EXPECT_EQ(run(), refusal(901) +
                         "log 4 Traps are disabled$\nlog 4 7,7,7: trapNum, trapArgA, trapArgB, trapArgC, "
                         "trapArgD, owner, uint, str, status, uint, str$\nagent check\n" +
                         refusal(902) + "agent check\n" + refusal(903) +
                         "agent check\n"
                         "wait 10000 us\nagent check\n" +  // rests only now
                         kSigterm +
                         kPopped + "result 0");
    EXPECT_FALSE(sendTestTrap);
    EXPECT_FALSE(displayTraps_requested);
}

TEST_F(MainLoop, HoldsEventsBackWhileTheArrayIsAway) {
    snmpSubagentComm->set_apimgr_state(false);
    fake_api_mgr::refuse_connections(true);
    queue_unknown(901);
    queue_unknown(902);
    sendTestTrap = true;
    transcript::on("log 4 failed interface test",
                   [](const string&) { fake_api_mgr::refuse_connections(false); });
    fake_agent::on_check = [passes = 0]() mutable {
        if (snmpSubagentComm->apimgr_ok() && ++passes == 3)
            catch_sigterm(SIGTERM);
        return 0;
    };
    const string course = run();
    const size_t back = course.find("serve 15 s\n");
    ASSERT_NE(back, string::npos) << course;
    EXPECT_EQ(course.find("wait 10000 us\n"), 0);  // they cannot be processed, so they do not end the rest
    EXPECT_GT(course.find(refusal(901)), back);
    EXPECT_LT(course.find(refusal(901)), course.find("Traps are disabled"));
    EXPECT_LT(course.find("Traps are disabled"), course.find(refusal(902)));
}

TEST_F(MainLoop, LooksAtLinksThatWereSilentForMoreThanTwoWholeSeconds) {
    const string calm = string("wait 10000 us\nagent check\nwait 10000 us\n");
    const std::pair<int64_t, string> rows[] = {
        {3'000'000 - 10'000 - 1, ""},
        {3'000'000 - 10'000, string("api GetList TsController\nagent check\nagent ping\n") + kSnmpget + kPs}};
    for (const auto& [silence_us, looks] : rows) {
        const int64_t start_us = ClockNowUs();
        at_checks({[&] {
                       fake_clock::set(start_us + silence_us);
                       return 0;
                   },
                   nothing});
        if (!looks.empty())
            fake_agent::on_check = [begin = fake_agent::on_check, checks = 0]() mutable {
                return ++checks == 2 ? 0 : begin();
            };
        EXPECT_EQ(run(), calm + looks + "agent check\n" + kSigterm + kPopped + "result 0");
        see_all_well();
    }
}

TEST_F(MainLoop, CountsStrikesUntilTheApiManagerIsBack) {
    const string refused =
        "api refused\nlog 4 Exception: /tmp/apimgr.sock: nobody listens$\n"
        "log 4  ---- Can't connect to ApiMgr's socket ----$\nlog 4 Could not open socket to ApiMgr.$\n";
    const auto strike = [&](int number) {
        return refused +
               "log 4 failed interface test to apimgr: strikes_against_apimgr = " + std::to_string(number) +
               " out of 3: we'll retry after a sleep of 15 sec$\nserve 15 s\n";
    };
    snmpSubagentComm->set_apimgr_state(false);
    fake_api_mgr::refuse_connections(true);
    int strikes = 0;
    transcript::on("log 4 failed interface test", [&](const string&) {
        if (++strikes == 2)
            fake_api_mgr::refuse_connections(false);
    });
    int checks = 0;
    fake_agent::on_check = [&] {
        if (snmpSubagentComm->apimgr_ok() && ++checks == 2) {  // lost again
            snmpSubagentComm->set_apimgr_state(false);
            fake_api_mgr::refuse_connections(true);
        }
        return 0;
    };
    EXPECT_EQ(run(),
              "wait 10000 us\n" + strike(1) + "wait 10000 us\n" + strike(2) +
                  "wait 10000 us\napi ping\napi GetList TsController\n" + kPs +
                  "agent check\n"
                  // The next iteration logs the recovery and clears the strikes.
                  "wait 10000 us\nlog 4 interface to apimgr has been recovered before reached 3 strikes$\n"
                  "agent check\nagent ping\n" +
                  kSnmpget +
                  "agent check\n"
                  "wait 10000 us\n" +
                  strike(1) + "wait 10000 us\n" + strike(2) + "wait 10000 us\n" + refused +
                  "log 4 failed interface test to apimgr: 3 retries and no connect.$\nresult 1");
}

TEST_F(MainLoop, TestsTheWholeLinkWhenTheAccessTestFails) {
    verbose = true;
    fake_clock::advance(3'000'000);
    snmpSubagentComm->set_agentx_state(true);
    last_mem_check_time_us = ClockNowUs();
    int exchanges = 0;
    fake_api_mgr::meddle([&](const fake_api_mgr::envelope&, fake_api_mgr::envelope& answer) {
        if (++exchanges == 1)
            answer.clear_apirespmsg();
    });
    at_checks({nothing});
    EXPECT_EQ(run(),
              string("wait 10000 us\napi GetList TsController\nlog 4 msgResponse did Not have apirespmsg$\n"
                     "log 4 Error on ApiMgr-ping.$\nlog 7 connection to apimgr is Not okay$\napi ping\n"
                     "api GetList TsController\nagent check\n") +
                  kSigterm + kPopped + "log 7 exiting main_loop$\nresult 0");
}

TEST_F(MainLoop, StartsANewCopyWhenTheChainIsBroken) {
    const std::tuple<const char*, std::function<void()>, string> rows[] = {
        {"no main session", [] { fake_agent::has_main_session = false; }, "log 4 main-session went down$\n"},
        {"no ping", [] { fake_agent::ping_result = 0; },
         "agent check\nagent ping\nlog 4 Error on ping to master agent$\n"},
        {"no self-test", [] { vars[COLID_selfTestVersion].flags = 0; },
         "agent check\nagent ping\nlog 4 Did not get results from previous execute of snmpget of self-test "
         "oid$\n"},
        {"no snmpget", [] { fake_agent::output_of = [](const string&) { return nullptr; }; },
         string("agent check\nagent ping\n") + kSnmpget + "log 4 failed popen(): args: " +
             string(kSnmpget).substr(5, string(kSnmpget).size() - 6) + "$\n"},
    };
    for (const auto& [what, breakage, course] : rows) {
        see_all_well();
        fake_clock::advance(3'000'000);
        snmpSubagentComm->set_apimgr_state(true);
        breakage();
        EXPECT_EQ(run(), "wait 10000 us\n" + course + kRestart + "result 1") << what;
        EXPECT_EQ(snmpSubagentComm->agentx_ok(), string(what) == "no main session");
    }
}

TEST_F(MainLoop, AnswersWhatCameInALongPassBeforeItJudges) {
    const auto request = [](int64_t duration_us) {
        return [duration_us] {
            fake_clock::advance(duration_us);
            vars[COLID_selfTestVersion].flags |= VAR_FLAG_delivered;
            return 1;
        };
    };
    const auto course = [](const char* checks) {
        return string("wait 10000 us\n") + checks + "agent ping\n" + kSnmpget + "agent check\n" + kSigterm +
               kPopped + "result 0";
    };
    const auto begin_long_pass = [] {
        fake_clock::advance(3'000'000);
        snmpSubagentComm->set_apimgr_state(true);
        last_mem_check_time_us = ClockNowUs();
        vars[COLID_selfTestVersion].flags = 0;
    };
    begin_long_pass();
    at_checks({request(0), request(0), nothing, nothing});
    EXPECT_EQ(run(), course("agent check\nagent check\nagent check\n"));
    see_all_well();
    begin_long_pass();
    at_checks({request(600'000), request(600'000), nothing});  // serving stops after a second
    EXPECT_EQ(run(), course("agent check\nagent check\n"));
}

TEST_F(MainLoop, EndsAtWhicheverPointItSeesSigterm) {
    const string refused_test =
        "api refused\nlog 4 Caught std::exception processing request: /tmp/apimgr.sock: "
        "nobody listens$\nlog 4 Error on ApiMgr-ping.$\n";
    const std::tuple<const char*, std::function<void()>, string> rows[] = {
        {"wait", nothing, string("wait 10000 us\n") + kSigterm + "log 7 exiting main_loop$\nresult 1"},
        {"log 4 liteObjEnabled", [] { tempTest_requested = true; },
         string("wait 10000 us\nlog 4 liteObjEnabled toggled to false$\n") + kSigterm +
             "log 7 exiting main_loop$\nresult 1"},
        {"log 4 Error on ApiMgr-ping", [] { fake_api_mgr::refuse_connections(true); },
         "wait 10000 us\n" + refused_test + kSigterm + "log 7 exiting main_loop$\nresult 1"},
        {"log 4 main-session down, or", [] { fake_agent::has_main_session = false; },
         string("wait 10000 us\napi GetList TsController\nlog 4 main-session went down$\n") +
             string(kRestart).substr(0, string(kRestart).find("run")) + kSigterm +
             "log 7 exiting main_loop$\nresult 1"},  // and starts no new copy
        {"log 4 failed interface test",
         [] {
             snmpSubagentComm->set_apimgr_state(false);
             fake_api_mgr::refuse_connections(true);
             verbose = false;
         },
         string(
             "wait 10000 us\napi refused\nlog 4 Exception: /tmp/apimgr.sock: nobody listens$\n"
             "log 4  ---- Can't connect to ApiMgr's socket ----$\nlog 4 Could not open socket to ApiMgr.$\n"
             "log 4 failed interface test to apimgr: strikes_against_apimgr = 1 out of 3: we'll retry after "
             "a "
             "sleep of 15 sec$\n") +
             kSigterm + kPopped + "result 0"},
        {"api GetList", nothing,  // aborts a test in progress, and the iteration
         string("wait 10000 us\napi GetList TsController\nagent check\n") + kSigterm + kPopped +
             "log 7 exiting main_loop$\nresult 0"},
    };
    static string when;
    transcript::on("", [](const string& line) {
        if (line.rfind(when, 0) == 0)
            catch_sigterm(SIGTERM);
    });
    for (const auto& [each_when, prepare, course] : rows) {
        when = "";
        verbose = true;
        log_caught_signals();
        see_all_well();
        fake_clock::advance(3'000'000);
        snmpSubagentComm->set_agentx_state(true);
        last_mem_check_time_us = ClockNowUs();
        prepare();
        transcript::take();
        when = each_when;
        EXPECT_EQ(run(), course) << each_when;
    }
}

TEST_F(MainLoop, EndsWhenTheListenerCouldNotBeSetUp) {
    fake_agent::on_check = [] {
        abort_snmpSubagent = true;
        return 0;
    };
    EXPECT_EQ(run(),
              "wait 10000 us\nagent check\n"
              "log 4 popped out of main_loop: snmpSubagent_is_active=1, abort_snmpSubagent=1$\nresult 0");
}

TEST_F(MainLoop, GoesOnAfterSigintAndSigpipe) {
    verbose = true;
    at_checks({[] {
                   catch_sigint(SIGINT);
                   for (int i = 0; i < 5; ++i)
                       catch_sigpipe(SIGPIPE);
                   return 0;
               },
               [] {
                   catch_sigpipe(SIGPIPE);  // less than 10 seconds after the last line
                   return 0;
               },
               nothing});
    EXPECT_EQ(run(), string("wait 10000 us\nagent check\nwait 10000 us\n"
                            "log 4 (((((((((((((((((( SIGINT ))))))))))))))))))))$\n"
                            "log 7 (((((((((((((((((( SIGPIPE ))))))))))))))))))))$\n"
                            "agent check\nwait 10000 us\nagent check\n") +
                         kSigterm + kPopped + "log 7 exiting main_loop$\nresult 0");
}

}  // namespace
