#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/outstandingTraps.h"

#include "apiMgmt/common/platform/clock.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibValues.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"
#include "tests/unit/core/fakes/fakeApiMgr.h"
#include "tests/unit/core/fakes/fakeClock.h"
#include "tests/unit/core/fakes/transcript.h"
#include "tests/unit/core/trapWorld.h"

namespace {

using std::string;

constexpr int64_t kMinuteUs = 60 * kSecondUs;

// Controller 2 (API index 12) is the object of most tests: its status stands in the store alone.
class Outstanding : public TrapWorld {
  protected:
    const int32_t status = var_at(COLID_tsCtlrStatus, 2);
    const int32_t number = var_at(COLID_tsCtlrNbr, 2);

    static string event(int32_t trapArgD = 0) {
        return run("1 2 3 203 12 0 0 " + std::to_string(trapArgD) + " a@@@text");
    }

    static bool was_sent(const string& course) { return course.find("\nnotify ") != string::npos; }

    /** The records: trap number, first argument, status; ";" behind each. */
    static string records() {
        string text;
        for (const auto& record : outstandingTraps)
            text += std::to_string(record->command.trapNum) + " " + std::to_string(record->command.trapArgA) +
                    " " + std::to_string(record->statusUint) + ";";
        return text;
    }

    /** One look of the main loop, some time later; what it called. */
    static string check(int64_t later_us = kSecondUs) {
        fake_clock::advance(later_us);
        check_outstanding_traps();
        return transcript::take();
    }

    static void go_down(const string& command, int32_t status_var, uint32_t to = 2) {
        set_status(status_var, to);
        run(command);
    }
};

TEST_F(Outstanding, NewEvents) {
    struct row {
        uint32_t before; /**< 0: no record */
        uint32_t now;
        int32_t trapArgD;
        bool sent;
        const char* records;
    };
    const row rows[] = {
        {0, 1, 0, true, ""},           {0, 2, 0, true, "203 12 2;"},  {0, 3, 5, true, "203 12 3;"},
        {2, 2, 0, false, "203 12 2;"}, {2, 2, 4, false, "203 12 2;"}, {2, 2, 5, true, "203 12 2;"},
        {2, 3, 0, true, "203 12 3;"},  {2, 1, 0, true, ""},           {3, 1, 5, true, ""},
    };
    for (const row& each : rows) {
        outstandingTraps.clear();
        if (each.before != 0)
            go_down("1 2 3 203 12 0 0 0 @@@", status, each.before);
        fake_clock::advance(kSecondUs);
        set_status(status, each.now);
        EXPECT_EQ(was_sent(event(each.trapArgD)), each.sent) << each.before << each.now << each.trapArgD;
        EXPECT_EQ(records(), each.records);
        if (each.sent && !outstandingTraps.empty()) {
            EXPECT_EQ(outstandingTraps[0]->timeAdded_us, ClockNowUs());
            EXPECT_EQ(outstandingTraps[0]->timeLastChecked_us, ClockNowUs());
        }
        if (!each.sent) {
            EXPECT_EQ(outstandingTraps[0]->timeLastChecked_us, ClockNowUs() - kSecondUs);
        }
    }
}

TEST_F(Outstanding, ObjectsThatAreGoneAreForgottenInSilence) {
    set_status(status, 2);
    event();
    store_number(var_at(COLID_tsCtlrNbr, 2), 9);  // another owner value: another object
    EXPECT_TRUE(was_sent(event()));
    EXPECT_EQ(outstandingTraps.size(), 2U);
    outstandingTraps.clear();

    // A disk is verified by its API index.
    answer_status("TsDisk", 43, "Down");
    EXPECT_TRUE(was_sent(run("1 2 3 202 43 0 0 0 @@@")));
    vars[var_at(COLID_tsDiskApiIndex, 2)].uint = 44;
    answer_status("TsDisk", 44, "Down");
    verbose = true;
    const string course = run("1 2 3 202 44 0 0 5 @@@");
    EXPECT_FALSE(was_sent(course));
    EXPECT_NE(course.find(
                  "log 7 we're removing the outstanding trap cuz verify-value does not match: trapNum: 202, "
                  "owenerOid: 27, statusOid: 28, status string: Down, var verify: 44, trap verify: 43$\n"),
              string::npos)
        << course;
    EXPECT_EQ(records(), "");

    const trap_variables variables = {.owner = number, .verify = number, .status = status};
    TrapToSend trap;
    trap.trapNum = 203;
    EXPECT_EQ(IsRedundantTrap(trap, variables, false), 0);
    clear_cached(status);
    EXPECT_EQ(IsRedundantTrap(trap, variables, true), 1);
    EXPECT_EQ(outstandingTraps.size(), 1U);
    EXPECT_EQ(IsRedundantTrap(trap, variables, false), 1);
    EXPECT_EQ(outstandingTraps.size(), 0U);
    EXPECT_NE(transcript::take().find(
                  "cuz the var is no longer cached: trapNum: 203, owenerOid: 16, statusOid: 17"),
              string::npos);
}

TEST_F(Outstanding, AnOwnerWithATextMatchesByItsVariable) {
    const string command = "1 2 3 204 2 2 2 0 @@@";
    go_down(command, var_at(COLID_tsCtlrPowerStatus, 2, 2));
    vars[var_at(COLID_tsCtlrPowerName, 2, 2)].str = "renamed";
    EXPECT_FALSE(was_sent(run(command)));
    EXPECT_EQ(records(), "204 2 2;");
}

TEST_F(Outstanding, ComparesByTheTypeOfTheColumn) {
    const trap_variables variables = {.owner = number, .verify = number, .status = status};
    TrapToSend trap;
    set_status(status, 2);
    for (const uint32_t type : {1, 4, 10, 11}) {
        outstandingTraps.clear();
        cols[COLID_tsCtlrStatus].data_type = type;
        cols[COLID_tsCtlrNbr].data_type = type;
        EXPECT_EQ(IsRedundantTrap(trap, variables, false), 0);
        EXPECT_EQ(find_outstanding_trap(number), 0U);
        EXPECT_EQ(IsRedundantTrap(trap, variables, false), 1);
    }
    cols[COLID_tsCtlrStatus].data_type = 2;
    outstandingTraps.clear();
    EXPECT_EQ(IsRedundantTrap(trap, variables, false), 0);
    EXPECT_EQ(outstandingTraps.size(), 1U);
    EXPECT_EQ(IsRedundantTrap(trap, variables, false), 1);
    vars[status].str = "Up";
    outstandingTraps.clear();
    EXPECT_EQ(IsRedundantTrap(trap, variables, false), 0);
    EXPECT_TRUE(outstandingTraps.empty());
    EXPECT_EQ(find_outstanding_trap(number), kNoOutstandingTrap);

    vars[status].str = "Down";
    EXPECT_EQ(IsRedundantTrap(trap, variables, false), 0);
    transcript::take();
    for (const auto& [type, log] : {std::pair<uint32_t, const char*>{0, "log 4 got SMI_BASETYPE_UNKNOWN$\n"},
                                    {5, "log 4 got an unknown data-type: 5$\n"}}) {
        cols[COLID_tsCtlrNbr].data_type = type;
        EXPECT_EQ(find_outstanding_trap(number), kNoOutstandingTrap);
        EXPECT_EQ(transcript::take(), log);
    }
    cols[COLID_tsCtlrStatus].data_type = 6;
    EXPECT_EQ(IsRedundantTrap(trap, variables, false), 1);
    EXPECT_EQ(transcript::take(), "log 4 col-id:17, can't process this data type: 6$\n");
}

TEST_F(Outstanding, TellsWhyWhenAsked) {
    verbose = true;
    set_status(status, 2);
    event();
    EXPECT_NE(event().find(
                  "log 7 we're not sending out this trap cuz it would be redundant: trapNum: 203, owenerOid: "
                  "16, statusOid: 17, status: 2$\n"),
              string::npos);
    set_status(status, 3);
    EXPECT_NE(
        event().find(
            "log 7 status uint has changed - remove this outstanding trap: trapNum: 203, owenerOid: 16, "
            "statusOid: 17, old status: 2, new status: 3$\n"),
        string::npos);
}

// ---- the check ----

TEST_F(Outstanding, RecheckFindsRecoveryAndChange) {
    set_status(status, 2);
    event(4);
    EXPECT_EQ(check(kMinuteUs - 1), "");
    EXPECT_EQ(check(1), "refresh tsController\n");
    EXPECT_EQ(check(kMinuteUs), "refresh tsController\n");  // nothing new: the record was seen
    set_status(status, 3);
    string course = check(kMinuteUs);
    EXPECT_EQ(course.find(
                  "refresh tsController\nlog 4 found status change: trapNum: 203, trapArgA: 12, trapArgB: 0, "
                  "trapArgC: 0, trapArgD: 4$\nrefresh tsController\nnotify"),
              0)
        << course;
    EXPECT_NE(course.find("  R.41.0 \"text\"\n"), string::npos);
    EXPECT_EQ(records(), "203 12 3;");
    set_status(status, 1);
    course = check(kMinuteUs);
    EXPECT_NE(course.find("trapArgD: 5$\n"), string::npos);
    EXPECT_NE(course.find("  R.41.0 \"Alert Cleared - text\"\n"), string::npos);
    EXPECT_NE(course.find("  R.43.0 integer 1\n"), string::npos);
    EXPECT_EQ(records(), "");
    EXPECT_EQ(outstandingTrapCursor, 0U);
    const int64_t last = lastTrapCheckTime_us;
    EXPECT_EQ(check(kMinuteUs), "");
    EXPECT_EQ(lastTrapCheckTime_us, last);
}

TEST_F(Outstanding, OneRecheckASecond) {
    go_down("1 2 3 203 12 0 0 0 @@@", status);
    go_down("1 2 3 205 5 0 0 0 @@@", var_at(COLID_tsEnclStatus, 1));
    go_down("1 2 3 210 2 0 0 0 @@@", var_at(COLID_tsCacheStatus, 2));
    EXPECT_EQ(check(kMinuteUs), "refresh tsController\n");
    EXPECT_EQ(check(kSecondUs - 1), "");
    EXPECT_EQ(check(1), "refresh tsEnclosure\n");
    EXPECT_EQ(check(), "refresh tsControllerCacheCard\n");
    EXPECT_EQ(check(), "");
    EXPECT_EQ(outstandingTrapCursor, 0U);
    EXPECT_EQ(check(57 * kSecondUs), "refresh tsController\n");
}

TEST_F(Outstanding, RecheckForgetsWhatIsGone) {
    verbose = true;
    go_down("1 2 3 203 12 0 0 0 @@@", status);
    store_number(number, 1);  // verified by the row number as well
    EXPECT_EQ(check(kMinuteUs),
              "log 7 found verify-value mismatch - removing outstanding trap: trap: 2, var: 1$\n");
    EXPECT_EQ(records(), "");
    store_number(number, 2);

    // Gone in mid-walk: the next record is looked at in the same pass.
    go_down("1 2 3 203 12 0 0 0 @@@", status);
    go_down("1 2 3 205 5 0 0 0 @@@", var_at(COLID_tsEnclStatus, 1));
    clear_cached(status);
    EXPECT_EQ(check(kMinuteUs),
              "refresh tsController\nlog 4 ctlr does not exist: 12$\n"
              "log 7 error while checking status - element is probably gone - removing outstanding trap: "
              "trapNum: 203, "
              "trapArgA: 12, trapArgB: 0, trapArgC: 0, trapArgD: 0$\n");
    // The record that slid into the place waits for the next walk.
    EXPECT_EQ(records(), "205 5 2;");
    EXPECT_EQ(outstandingTrapCursor, 0U);
    EXPECT_EQ(check(), "refresh tsEnclosure\n");
}

TEST_F(Outstanding, RecheckThatFailsForgets) {
    answer_status("TsDisk", 43, "Down");
    run("1 2 3 202 43 0 0 0 @@@");
    fake_api_mgr::refuse_connections(true);
    EXPECT_NE(check(kMinuteUs), "");
    EXPECT_EQ(records(), "");
    // A component goes with its controller.
    go_down("1 2 3 204 2 2 2 0 @@@", var_at(COLID_tsCtlrPowerStatus, 2, 2));
    set_status(status, 2);
    EXPECT_EQ(check(kMinuteUs), "refresh tsController\nlog 4 ctlr is not up: 2$\n");
    EXPECT_EQ(records(), "");
}

TEST_F(Outstanding, StaleRecordsGo) {
    verbose = true;
    go_down("1 2 3 203 12 0 0 0 @@@", status);
    EXPECT_EQ(check(604800 * kSecondUs + 999'999), "refresh tsController\n");
    EXPECT_EQ(check(604801 * kSecondUs),
              "log 7 oustanding trap is stale - removing outstanding trap: trapNum: 203, trapArgA: 12, "
              "trapArgB: 0, "
              "trapArgC: 0, trapArgD: 0$\n");
    EXPECT_EQ(records(), "");
}

TEST_F(Outstanding, RecheckOfAColumnWithoutValuesStaysThere) {
    go_down("1 2 3 203 12 0 0 0 @@@", status);
    go_down("1 2 3 205 5 0 0 0 @@@", var_at(COLID_tsEnclStatus, 1));
    outstandingTrapCursor = 1;
    cols[COLID_tsEnclStatus].data_type = 0;
    EXPECT_EQ(check(kMinuteUs), "refresh tsEnclosure\nlog 4 got SMI_BASETYPE_UNKNOWN$\n");
    EXPECT_EQ(outstandingTrapCursor, 1U);
}

TEST_F(Outstanding, IsDisplayed) {
    displayTraps_requested = true;
    go_down("1 2 3 203 12 6 7 8 @@@", status);
    const string heading =
        "log 4 7,7,7: trapNum, trapArgA, trapArgB, trapArgC, trapArgD, owner, uint, str, status, uint, "
        "str$\n";
    transcript::take();
    EXPECT_EQ(handleDisplayOutstandingTraps(), 0);
    EXPECT_EQ(
        transcript::take(),
        heading +
            "log 4 1,2,3: 203, 12, 6, 7, 8, ownerVar col-id:16, uint:2, str:, verifyVar col-id:16, uint:2 "
            "statusVar col-id:17, uint:2, str:Down$\n");
    EXPECT_FALSE(displayTraps_requested);
}

}  // namespace
