#include <map>

#include "apiMgmt/common/platform/clock.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/processState.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/settings/subagentConf.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/enterpriseNumber.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/requestHandler.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/requestPace.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/serviceWindow.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/setRequest.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapQueue.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibValues.h"
#include "tests/unit/core/fakes/mibWorld.h"
#include "tests/unit/core/fakes/snmpPdu.h"

namespace {

using std::string;

class Handler : public MibWorld {
  protected:
    Handler() {
        verbose = false;
        begin_agent_tick();
    }

    void make_walk() {
        put("R.1.0", "Tessera");
        put("R.6.0", 4294967293U);
        put("R.13.1.2.1", 4294967293U);
        put("R.13.1.3.1", 1);
        put("R.46.1.11.2.1", 2);
    }
};

TEST_F(Handler, CutsATextThatNoAnswerCouldCarry) {
    put("R.1.0", string(3072, 'x'));
    EXPECT_EQ(get("R.1.0"), "R.1.0 = \"" + string(3072, 'x') + "\"");
    EXPECT_EQ(transcript::take().find("log 4"), string::npos);
    put("R.1.0", string(3071, 'x') + "\xc3\xa4");  // a character of two octets at the limit
    EXPECT_EQ(get("R.1.0"), "R.1.0 = \"" + string(3071, 'x') + "\"");
    EXPECT_NE(transcript::take().find("log 4 col-id:4, a string of 3073 octets is truncated to 3071$\n"),
              string::npos);
    get("R.1.0");
    EXPECT_EQ(transcript::take().find("log 4"), string::npos);
}

TEST_F(Handler, RefusesAnAnswerThatTheMasterAgentWouldDrop) {
    // Twenty strings of maximum length, one more, and a binding of another registration. The error response
    // repeats the received bindings, and must be short enough itself.
    const auto serve = [](const char* foreign) {
        snmp_pdu_of_test pdu(MODE_GET);
        for (int i = 0; i < 20; ++i)
            pdu.ask("R.1.0");
        const int result = pdu.ask("R.2.0").foreign(foreign).serve();
        return std::to_string(result) + ", ranges " + std::to_string(pdu.ranges());
    };
    put("R.1.0", string(3072, 'x'));
    put("R.2.0", string(3008, 'y'));
    EXPECT_EQ(serve("R.13.1.2.1"), "0, ranges 22");
    EXPECT_EQ(serve("R.46.1.11.2.1"), "1, ranges 0");
    put("R.2.0", string(3009, 'y'));
    EXPECT_EQ(serve("R.13.1.2.1"), "1, ranges 0");
    EXPECT_EQ(get("R.1.0").size(), 3082U);  // the next PDU is served
    end_agent_tick();
    EXPECT_EQ(serve("R.13.1.2.1"), "5, ranges 0");
}

TEST_F(Handler, HasAResultForEachMode) {
    make_walk();
    const std::tuple<int, const char*, int, const char*> rows[] = {
        {MODE_GET, "R.2.0", SNMP_ERR_NOSUCHNAME, ""},
        {MODE_GET, "1.3.6.1.4", SNMP_ERR_GENERR, ""},
        {MODE_GETNEXT, "1.3.6.1.4", SNMP_ERR_GENERR, ""},
        {MODE_GETNEXT, "R.46.1.11.2.1", SNMP_ERR_NOERROR, ""},
        {MODE_GETBULK, "R.1.0", SNMP_ERR_GENERR,
         "log 4 Error: Recieved a GETBULK request from master agent$\n"},
        {77, "R.1.0", SNMP_ERR_GENERR, "log 4 UNKNOWN MODE: reqinfo->mode: 77$\n"},
        {MODE_SET_RESERVE2, "R.1.0", SNMP_ERR_NOERROR, ""},
        {MODE_SET_ACTION, "R.1.0", SNMP_ERR_NOERROR, ""},
        {MODE_SET_FREE, "R.1.0", SNMP_ERR_NOERROR, ""},
        {MODE_SET_UNDO, "R.1.0", SNMP_ERR_NOERROR, ""},
    };
    for (const auto& [mode, name, result, log] : rows) {
        snmp_pdu_of_test pdu(mode);
        begin_agent_tick();
        EXPECT_EQ(pdu.ask(name).call_handler(), result) << mode << " " << name;
        EXPECT_EQ(transcript::take(), log);
    }
}

TEST_F(Handler, WalksTheWholeStoreInEitherForm) {
    make_walk();
    string walk;
    string name = "R";
    for (int i = 0; i < 6; ++i) {
        begin_agent_tick();
        const string answer = get_next(name);
        name = answer.substr(0, answer.find(' '));
        walk += answer + "\n";
    }
    EXPECT_EQ(
        walk,
        "R.1.0 = \"Tessera\"\nR.6.0 = integer -3\nR.13.1.2.1 = gauge 4294967293\nR.13.1.3.1 = integer 1\n"
        "R.46.1.11.2.1 = integer 2\nR.46.1.11.2.1 = endOfMibView\n");
    begin_agent_tick();
    get("R.1.0");  // a delivered variable: a walk in the old form may begin
    EXPECT_NE(vars[index_of("R.1.0")].flags & VAR_FLAG_delivered, 0);
    EXPECT_TRUE(snmpSubagentComm->agentx_ok());
    string old_walk;
    name = "OLD";
    for (int i = 0; i < 7; ++i) {
        begin_agent_tick();
        if (i > 0)
            get_next("R.46.1.11.2.1");  // another manager's walk ends
        const string answer = get_next(name);
        name = answer.substr(0, answer.find(' '));
        old_walk += answer + "\n";
    }
    EXPECT_EQ(old_walk,
              "OLD.2.1.0 = \"Tessera\"\nOLD.2.6.0 = integer -3\nOLD.2.13.1.2.1 = gauge 4294967293\n"
              "OLD.2.13.1.3.1 = integer 1\nOLD.2.46.1.11.2.1 = integer 2\nOLD.2.46.1.11.2.1 = endOfMibView\n"
              "OLD.2.46.1.11.2.1 = endOfMibView\n");
    begin_agent_tick();
    EXPECT_EQ(get_next("OLD"), "OLD = endOfMibView");
    EXPECT_EQ(get("OLD.2.1.0"), "OLD.2.1.0 = \"Tessera\"");
    EXPECT_EQ(get_next("OLD"), "OLD.2.1.0 = \"Tessera\"");
}

TEST_F(Handler, AcceptsTheOldFormUpToItsMaximumLength) {
    make_walk();
    EXPECT_EQ(get_next("OLD.2.1.0"), "OLD.2.6.0 = integer -3");
    EXPECT_EQ(transcript::take(),
              "log 4 requester using old enterprise number: current_requestvb->name_length: 10, "
              "current_requestvb->name: 1.3.6.1.4.1.27405.2.1.0.$\n");
    // 15 sub-identifiers become 19; the last ones follow the instance of a scalar.
    EXPECT_EQ(get_next("OLD.2.1.0.9.9.9.9.9"), "OLD.2.6.0 = integer -3");
    EXPECT_EQ(transcript::take(), "");  // logged once
}

// ---- window, permission, failures, pacing ----

class Window : public Handler {
  protected:
    Window() {
        put("R.1.0", "Tessera");
        put("R.2.0", "text");
    }
    int good() { return snmp_pdu_of_test(MODE_GET).ask("R.1.0").serve(); }
    int bad() { return snmp_pdu_of_test(MODE_SET_RESERVE1).set("R.1.0", "x").serve(); }
};

TEST_F(Window, IsShutWhileTheMainThreadHoldsTheMutex) {
    pdu_failures = 3;
    mib_mutex.Lock();
    EXPECT_EQ(good(), SNMP_ERR_GENERR);
    mib_mutex.Unlock();
    EXPECT_EQ(pdu_failures, 0);
    EXPECT_EQ(permission_to_process_pdu, 10);
    EXPECT_EQ(good(), SNMP_ERR_NOERROR);  // it was unlocked after each request
    EXPECT_EQ(good(), SNMP_ERR_NOERROR);
    end_agent_tick();
    EXPECT_EQ(good(), SNMP_ERR_GENERR);
}

TEST_F(Window, LetsTenPdusPassInATick) {
    for (int i = 0; i < 10; ++i) {
        snmp_pdu_of_test pdu(MODE_GET);
        snmp_pdu_of_test other(MODE_GET);  // a PDU is identified by the address of its session
        EXPECT_EQ(i % 2 == 0 ? pdu.ask("R.1.0").serve() : other.ask("R.1.0").serve(), SNMP_ERR_NOERROR);
    }
    pdu_failures = 2;
    EXPECT_EQ(good(), SNMP_ERR_GENERR);
    EXPECT_EQ(pdu_failures, 0);
    begin_agent_tick();
    EXPECT_EQ(good(), SNMP_ERR_NOERROR);
}

TEST_F(Window, CountsAPduOnceHoweverManyCallsItTakes) {
    snmp_pdu_of_test pdu(MODE_GET);
    for (int i = 0; i < 30; ++i)
        pdu.ask("R.1.0");
    const int64_t slot_ms = next_pdu_slot_ms;
    EXPECT_EQ(pdu.serve(), SNMP_ERR_NOERROR);
    EXPECT_EQ(pdu.serve(), SNMP_ERR_NOERROR);
    EXPECT_EQ(permission_to_process_pdu, 9);
    EXPECT_EQ(next_pdu_slot_ms, std::max(slot_ms, ClockNowMs()) + 2);
}

TEST_F(Window, ClosesAtTheFifthFailedPduInARow) {
    // A PDU fails if any of its bindings does.
    const auto fail_somewhere = [](int i) {
        snmp_pdu_of_test pdu(MODE_GET);
        pdu.ask(i % 2 == 0 ? "R.1.0" : "R.9.0").ask("R.9.0").ask(i % 3 == 0 ? "R.1.0" : "R.9.0");
        return pdu.serve();
    };
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(fail_somewhere(i), SNMP_ERR_NOERROR);
        EXPECT_EQ(pdu_failures, i + 1);
        begin_agent_tick();
    }
    EXPECT_EQ(good(), SNMP_ERR_NOERROR);  // resets the count
    EXPECT_EQ(pdu_failures, 0);
    for (int i = 0; i < 4; ++i) {
        begin_agent_tick();
        bad();
    }
    EXPECT_EQ(pdu_failures, 4);
    begin_agent_tick();
    EXPECT_EQ(get_next("R.2.0"), "R.2.0 = endOfMibView");  // counts as a failure although it is not an error
    EXPECT_EQ(pdu_failures, 0);
    EXPECT_EQ(permission_to_process_pdu, 0);
    snmp_pdu_of_test sixth(MODE_GET);
    EXPECT_EQ(sixth.ask("R.1.0").serve(), SNMP_ERR_GENERR);
    EXPECT_EQ(sixth.answer(0), "R.1.0 = null !5");
    begin_agent_tick();
    EXPECT_EQ(good(), SNMP_ERR_NOERROR);
}

TEST_F(Window, PacesPdusToAboutFiveHundredASecond) {
    const int64_t start_ms = ClockNowMs();
    fake_clock::write_sleeps(true);
    SnmpSubagentMibHandlers::pace_pdu_processing();
    EXPECT_EQ(next_pdu_slot_ms, start_ms + 2);
    for (int i = 0; i < 499; ++i)
        SnmpSubagentMibHandlers::pace_pdu_processing();
    EXPECT_EQ(next_pdu_slot_ms, start_ms + 1000);
    EXPECT_EQ(transcript::take(), "");  // a burst is not delayed
    for (int i = 0; i < 500; ++i)
        SnmpSubagentMibHandlers::pace_pdu_processing();
    EXPECT_EQ(next_pdu_slot_ms, start_ms + 2000);
    EXPECT_NEAR(ClockNowMs(), start_ms + 1000, 8);  // their duration
    EXPECT_EQ(transcript::take().find_first_not_of("sleep 8000 us\n"), string::npos);
    fake_clock::advance(2000 * 1000);
    SnmpSubagentMibHandlers::pace_pdu_processing();
    EXPECT_EQ(next_pdu_slot_ms, ClockNowMs() + 2);
    EXPECT_EQ(transcript::take(), "");
}

TEST_F(Window, RejectsWhatExceedsThePaceInAnOverloadOnly) {
    verbose = false;
    const auto results_of = [](int pdus, size_t octets, size_t waiting) {
        std::map<int, int> results;
        for (int i = 0; i < pdus; ++i) {
            note_no_request_waits();
            for (size_t each = 0; each < waiting; ++each)
                note_request_arrived(octets);
            begin_agent_tick();
            snmp_pdu_of_test pdu(MODE_GET);
            ++results[pdu.ask("R.1.0").serve()];
            fake_clock::advance(100);
        }
        return results;
    };
    using results = std::map<int, int>;
    const string begin = "log 4 overload: ";
    // Fast walkers have few pending requests, however long they walk.
    EXPECT_EQ(results_of(10'000, 100, 50), (results{{SNMP_ERR_NOERROR, 10'000}}));
    // Many requests wait until their managers have given up.
    EXPECT_EQ(results_of(2'300, 100, 60), (results{{SNMP_ERR_NOERROR, 2'300}}));
    EXPECT_EQ(transcript::take(), "");
    EXPECT_GT(results_of(10'000, 100, 60)[SNMP_ERR_GENERR], 5'000);
    EXPECT_EQ(transcript::take(),
              begin + "60 requests of 6000 octets wait; rejecting those that exceed the pace$\n");
    begin_agent_tick();
    put("R.6.0", 3U);
    EXPECT_EQ(get("R.6.0"), "R.6.0 = integer 3");  // nobody else requests it
    fake_clock::advance(2'000'000);
    EXPECT_EQ(results_of(1, 100, 60), (results{{SNMP_ERR_NOERROR, 1}}));
    EXPECT_TRUE(transcript::take().starts_with("log 4 overload is over: rejected "));
    // Large requests reach the limit of snmpd's memory earlier.
    EXPECT_EQ(results_of(100, 5'000, 60), (results{{SNMP_ERR_GENERR, 100}}));
}

// ---- SET ----

class Set : public Handler {
  protected:
    Set() {
        build_api_request_prefix("KEY");
        conf_controllerIdThis = 64702;
        put("R.13.1.6.1", "Empty");
        put("R.13.1.4.1", "name");
        put("R.6.0", 3);
        put("R.42.0", "empty");
        put("R.43.0", 0U);
        put("1.3.6.1.2.1.1.5.0", "old name");
    }

    // Runs both phases that check the value. Returns their results, the log, and the value in the store.
    static string set(const string& name, const string& text) {
        transcript::take();
        begin_agent_tick();
        snmp_pdu_of_test pdu(MODE_SET_RESERVE1);
        pdu.set(name, text);
        string course = std::to_string(pdu.serve(MODE_SET_RESERVE1));
        if (course == "0")
            course += " " + std::to_string(pdu.serve(MODE_SET_COMMIT));
        return course + pdu.answer(0).substr(pdu.answer(0).rfind('"') + 1) + "\n" + transcript::take();
    }
};

TEST_F(Set, RefusesWhatMayNotBeWritten) {
    verbose = true;
    const std::tuple<const char*, const char*, const char*, const char*, const char*> rows[] = {
        {"R.13.1.6.2", "ForceTrap", "2 !2", "", "-1"},  // the row does not exist
        {"R.13.1.6", "ForceTrap", "2 !2", "", "-1"},
        {"R.13.1.4.1", "ForceTrap", "17 !17", "no Set handler defined: col-id: 18", "18"},
        {"R.6.0", "ForceTrap", "17 !17", "no Set handler defined: col-id: 9", "9"},
        {"R.13.1.6.1", "forcetrap", "3 !3", "string is not 'ForceTrap': col-id: 20", "20"},
        {"R.13.1.6.1", "ForceTrap ", "3 !3", "string is not 'ForceTrap': col-id: 20", "20"},
        {"R.13.1.6.1", "ForceTra", "3 !3", "string is not 'ForceTrap': col-id: 20", "20"},
        {"R.13.1.6.1", "", "3 !3", "string is not 'ForceTrap': col-id: 20", "20"},
    };
    for (const auto& [name, text, each_course, reason, column] : rows) {
        const string course = set(name, text);
        EXPECT_EQ(course.rfind(string(each_course) + "\n", 0), 0U) << course;
        EXPECT_NE(course.find(string("log 7 ") + reason), string::npos) << course;
        EXPECT_NE(course.find(string("log 7 failed for reserve1: col-id: ") + column + "$\n"), string::npos)
            << course;
    }
    cols[COLID_tsCtlrForceTrap].data_type = SMI_BASETYPE_UNSIGNED32;
    const string course = set("R.13.1.6.1", "ForceTrap");
    EXPECT_EQ(course.rfind("7 !7\n", 0), 0U) << course;
    EXPECT_NE(course.find("log 7 data_type is not string: col-id: 20$\n"), string::npos);
    EXPECT_EQ(value_of(index_of("R.43.0")), "0");
}

TEST_F(Set, OfForceTrapIsStoredAtCommit) {
    EXPECT_EQ(set("R.13.1.6.1", "ForceTrap"), "0 0\n");
    EXPECT_EQ(value_of(index_of("R.43.0")), "2");
    EXPECT_EQ(
        set("OLD.2.13.1.6.1", "ForceTrap"),
        "0 0\nlog 4 requester using old enterprise number: "
        "current_requestvb->name_length: 12, current_requestvb->name: 1.3.6.1.4.1.27405.2.13.1.6.1.$\n");

    trapAlertState = 0;
    EXPECT_EQ(set("R.42.0", "1 2 3"),  // incomplete command
              "0 5 !5\nlog 4 SET failed at 1.3.6.1.4.1.913.11000.2000.500.1.2.42.0.: this binding and those "
              "after it were not executed$\n");
    EXPECT_EQ(trapAlertState, 0);  // outside the columns of ForceTrap

    snmp_pdu_of_test pdu(MODE_SET_RESERVE1);
    EXPECT_EQ(pdu.set("R.13.1.6.1", "ForceTrap").serve(), SNMP_ERR_NOERROR);
    clear_cached(index_of("R.13.1.6.1"));
    EXPECT_EQ(pdu.serve(MODE_SET_COMMIT), SNMP_ERR_NOSUCHNAME);  // it is checked again
}

TEST_F(Set, OfTheSystemGroupIsHandedToTheArrayLater) {
    const auto performed = [] {
        transcript::take();
        perform_queued_set();
        return transcript::take();
    };
    put("1.3.6.1.2.1.1.6.0", "");
    EXPECT_EQ(set("1.3.6.1.2.1.1.5.0", "replaced before it is sent"), "0 0\n");
    EXPECT_EQ(set("1.3.6.1.2.1.1.6.0", "here"), "0 0\n");
    EXPECT_EQ(set("1.3.6.1.2.1.1.5.0", "a<b & \"c\"\tO'Neill\n\1"), "0 0\n");
    put("1.3.6.1.2.1.1.5.0", "what a refresh brought back");
    EXPECT_EQ(performed(), "api Modify Tessera 64702\n");
    EXPECT_EQ(
        fake_api_mgr::last_document,
        "<lumapi><ApiConnection><SessionKey>KEY</SessionKey></ApiConnection><ApiMethod><CommandType>Method"
        "</CommandType><Object>Tessera</Object><Command>Modify</Command><Async>false</Async>"
        "<ObjectEncodeType>xml</ObjectEncodeType><Attributes><InstanceId>64702</InstanceId><Name>a&lt;b "
        "&amp; \"c\"\tO'Neill\n&#x0a;</Name></Attributes></ApiMethod></lumapi>");
    EXPECT_EQ(vars[index_of("1.3.6.1.2.1.1.5.0")].str, "a<b & \"c\"\tO'Neill\n\1");
    EXPECT_EQ(performed(), "api Modify Tessera 64702\n");
    EXPECT_NE(fake_api_mgr::last_document.find("<Location>here</Location>"), string::npos);
    EXPECT_EQ(performed(), "");

    // A value that the array rejects is ignored; a failed exchange is logged. The store has the new string.
    put("1.3.6.1.2.1.1.4.0", "");
    fake_api_mgr::documents["Modify Tessera 64702"] = fake_api_mgr::failure_answer("No");
    set("1.3.6.1.2.1.1.4.0", "");
    EXPECT_EQ(performed(), "api Modify Tessera 64702\n");
    fake_api_mgr::refuse_connections(true);
    set("1.3.6.1.2.1.1.4.0", "me");
    EXPECT_EQ(performed(),
              "api refused\n"
              "log 4 Caught std::exception processing request: /tmp/apimgr.sock: nobody listens$\n"
              "log 4 failed to SendRequestToAPIManager: Tessera$\n"
              "log 4 SET failed at 1.3.6.1.2.1.1.4.0: no valid response from the API manager$\n");
    EXPECT_EQ(value_of(index_of("1.3.6.1.2.1.1.4.0")), "\"me\"");
}

// ---- several bindings: between Net-SNMP and the handler ----

class Bindings : public Handler {
  protected:
    Bindings() { make_walk(); }
};

TEST_F(Bindings, OfOtherRegistrationsAreLeftAlone) {
    snmp_pdu_of_test pdu(MODE_GETNEXT);
    pdu.foreign("1.3.6.1.2.1.1.1").ask("R.1.0").foreign("1.3.6.1.2.1.1.3").ask("R.13").foreign("R.6.0");
    EXPECT_EQ(pdu.serve(), SNMP_ERR_NOERROR);
    EXPECT_EQ(pdu.answers(),
              "1.3.6.1.2.1.1.1 = null\nR.6.0 = integer -3\n1.3.6.1.2.1.1.3 = null\n"
              "R.13.1.2.1 = gauge 4294967293\nR.6.0 = null\n");

    // Each set_fn runs once, and the chain is complete afterwards.
    put("R.42.0", "");
    snmp_pdu_of_test set_pdu(MODE_SET_COMMIT);
    set_pdu.set("R.42.0", "1 2 3 4 5 6 7 8 one").foreign("R.42.0").foreign("1.3.6");
    EXPECT_EQ(set_pdu.serve(), SNMP_ERR_NOERROR);
    EXPECT_EQ(set_pdu.answers(), "R.42.0 = \"1 2 3 4 5 6 7 8 one\"\nR.42.0 = null\n1.3.6 = null\n");
    EXPECT_EQ(trapsToSend.size(), 1U);
}

TEST_F(Bindings, EndTheirOwnWalksInTheOldForm) {
    get("R.1.0");
    snmp_pdu_of_test old_nexts(MODE_GETNEXT);
    old_nexts.ask("OLD.2.46.1.11.2.1").ask("OLD").ask("OLD.2.46.1.11.2.1");
    EXPECT_EQ(old_nexts.serve(), SNMP_ERR_NOERROR);
    EXPECT_EQ(
        old_nexts.answers(),
        "OLD.2.46.1.11.2.1 = endOfMibView\nOLD.2.1.0 = \"Tessera\"\nOLD.2.46.1.11.2.1 = endOfMibView\n");
}

TEST_F(Bindings, ThatHaveEndedDoNotBeginAnewInTheOldForm) {
    snmp_pdu_of_test pdu(MODE_GETNEXT);
    pdu.ask("R.46.1.11.2.1").serve();
    pdu.registered_at("OLD").rename(0, "OLD");
    EXPECT_EQ(pdu.serve(), SNMP_ERR_NOERROR);
    EXPECT_EQ(pdu.answers(), "OLD = endOfMibView\n");
}

TEST_F(Bindings, MayAskForTheirOwnNameWhereAWalkEntersARegistration) {
    put("1.3.6.1.2.1.1.4.0", "me");
    put("1.3.6.1.2.1.1.5.0", "name");
    snmp_pdu_of_test entering(MODE_GETNEXT);
    entering.registered_at("1.3.6.1.2.1.1.4.0").ask("1.3.6.1.2.1.1.4.0", true);
    EXPECT_EQ(entering.serve(), SNMP_ERR_NOERROR);
    EXPECT_EQ(entering.answers(), "1.3.6.1.2.1.1.4.0 = \"me\"\n");

    // Not cached: returns the next one. The other name is from a registration that its walk has just left.
    clear_cached(index_of("1.3.6.1.2.1.1.4.0"));
    get("R.1.0");
    snmp_pdu_of_test missing(MODE_GETNEXT);
    missing.registered_at("1.3.6.1.2.1.1.4.0").ask("1.3.6.1.2.1.1.4.0", true).serve();
    EXPECT_EQ(missing.answers(), "1.3.6.1.2.1.1.5.0 = \"name\"\n");
    snmp_pdu_of_test leaving(MODE_GETNEXT);
    leaving.registered_at("1.3.6.1.4.1.913").ask("1.3.6.1.2.1.1.5.0", true).serve();
    EXPECT_EQ(leaving.answers(), "R.1.0 = \"Tessera\"\n");
}

}  // namespace
