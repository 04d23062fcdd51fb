#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/outstandingTraps.h"

#include "apiMgmt/common/platform/clock.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/outstandingCheck.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"
#include "tests/unit/core/fakes/fakeApiMgr.h"
#include "tests/unit/core/fakes/fakeClock.h"
#include "tests/unit/core/fakes/transcript.h"
#include "tests/unit/core/trapWorld.h"

namespace {

using std::string;

constexpr int64_t kMinuteUs = 60 * kSecondUs;

// Controller 2 has API index 12.
class Outstanding : public TrapWorld {
  protected:
    const int32_t status = var_at(COLID_tsCtlrStatus, 2);

    static string event(const string& arguments) { return run("1 2 3 " + arguments + " a@@@text"); }

    /** One look of the main loop, some time later; what it called. */
    static string check(int64_t later_us = kMinuteUs) {
        fake_clock::advance(later_us);
        check_outstanding_traps();
        return transcript::take();
    }

    static void expect_logged(const string& course, const string& line) {
        EXPECT_NE(course.find("log 7 " + line + "$\n"), string::npos) << line << " in\n" << course;
    }
};

TEST_F(Outstanding, IsOneRecordOfAnObject) {
    for (const int32_t var : {status, var_at(COLID_tsTsPortsBal, 1), var_at(COLID_tsEnclPowerStatus, 2, 2)})
        set_status(var, 2);
    for (const char* arguments : {"203 12 0 0 0", "211 1 0 0 0", "206 7 2 2 0"})
        EXPECT_NE(event(arguments).find("notify"), string::npos) << arguments;
    // A component is known by its name's variable, not by the name.
    vars[var_at(COLID_tsEnclPowerPosition, 2, 2)].str = "renamed";
    for (const char* arguments : {"203 12 7 8 4", "211 2 0 0 0", "206 7 2 2 4"})
        EXPECT_EQ(event(arguments).find("notify"), string::npos) << arguments;
    EXPECT_EQ(outstandingTraps.size(), 3U);
}

TEST_F(Outstanding, TellsWhyWhenAsked) {
    verbose = true;
    const string removal = "we're removing the outstanding trap cuz ";
    const string columns = "owenerOid: 16, statusOid: 17, ";
    set_status(status, 2);
    event("203 12 0 0 0");
    set_status(status, 3);
    event("203 12 0 0 0");
    clear_cached(status);
    const int32_t number = var_at(COLID_tsCtlrNbr, 2);
    EXPECT_EQ(IsRedundantTrap(outstandingTraps[0]->command, {number, number, status}, false), 1);
    expect_logged(transcript::take(), removal + "the var is no longer cached: trapNum: 203, " + columns +
                                          "status string: Degraded, var verify: 2, trap verify: 2");

    // A disk is verified by its API index.
    answer_status("TsDisk", 43, "Down");
    answer_status("TsDisk", 44, "Down");
    for (const bool is_event : {true, false}) {
        store_number(var_at(COLID_tsDiskApiIndex, 2), 43);
        event("202 43 0 0 0");
        store_number(var_at(COLID_tsDiskApiIndex, 2), 44);
        if (is_event)
            expect_logged(event("202 44 0 0 5"),
                          removal +
                              "verify-value does not match: trapNum: 202, owenerOid: 27, "
                              "statusOid: 28, status string: Down, var verify: 44, trap "
                              "verify: 43");
        else
            expect_logged(check(),
                          "found verify-value mismatch - removing outstanding trap: trap: 43, var: 44");
        EXPECT_TRUE(outstandingTraps.empty());
    }

    set_status(status, 2);
    event("203 12 0 0 0");
    expect_logged(
        check(604801 * kSecondUs),
        "oustanding trap is stale - removing outstanding trap: trapNum: 203, trapArgA: 12, trapArgB: 0, "
        "trapArgC: 0, trapArgD: 0");
}

TEST_F(Outstanding, RecheckFindsRecoveryAndChange) {
    set_status(status, 2);
    event("203 12 0 0 4");
    EXPECT_EQ(check(kMinuteUs - 1), "");
    EXPECT_EQ(check(1), "refresh tsController\n");
    set_status(status, 3);
    string course = check();
    EXPECT_EQ(course.find(
                  "refresh tsController\nlog 4 found status change: trapNum: 203, trapArgA: 12, trapArgB: 0, "
                  "trapArgC: 0, trapArgD: 4$\nrefresh tsController\nnotify"),
              0)
        << course;
    EXPECT_NE(course.find("  R.41.0 \"text\"\n"), string::npos);
    set_status(status, 1);
    course = check();
    EXPECT_NE(course.find("trapArgD: 5$\n"), string::npos);
    EXPECT_NE(course.find("  R.41.0 \"Alert Cleared - text\"\n"), string::npos);
}

// The record of an object that is looked up by its API index follows it to another row, and keeps the status
// that was notified last.
TEST_F(Outstanding, IsWhereItsObjectIs) {
    const auto put_ups = [](int32_t row, uint32_t api_index, uint32_t number) {
        store_number(var_at(COLID_tsUPSNbr, row), static_cast<uint32_t>(row));
        store_text(var_at(COLID_tsUPSName, row), "UPS " + std::to_string(api_index));
        store_number(var_at(COLID_tsUPSApiIndex, row), api_index);
        set_status(var_at(COLID_tsUPSStatus, row), number);
    };
    put_ups(1, 61, 2);
    EXPECT_NE(event("212 61 0 0 0").find("notify"), string::npos);
    put_ups(1, 62, 1);
    put_ups(2, 61, 2);
    EXPECT_EQ(check(), "refresh tsUps\n");
    EXPECT_EQ(outstandingTraps[0]->ownerVar, var_at(COLID_tsUPSNbr, 2));
    EXPECT_EQ(event("212 61 0 0 0").find("notify"), string::npos);
    EXPECT_EQ(event("212 62 0 0 0").find("Down"), string::npos);  // the other one, which is well
    EXPECT_EQ(outstandingTraps.size(), 1U);
    set_status(var_at(COLID_tsUPSStatus, 2), 1);
    const string course = check();
    EXPECT_NE(course.find("  R.30.1.4.2 \"UPS 61\"\n"), string::npos) << course;
    EXPECT_TRUE(outstandingTraps.empty());
}

TEST_F(Outstanding, EventsMakeReplaceAndEndRecords) {
    const std::tuple<uint32_t, const char*, bool, size_t> steps[] = {
        {1, "203 12 0 0 0", true, 0}, {2, "203 12 0 0 0", true, 1}, {2, "203 12 0 0 0", false, 1},
        {2, "203 12 0 0 5", true, 1}, {3, "203 12 0 0 0", true, 1}, {3, "203 11 0 0 0", true, 1},
        {1, "203 12 0 0 0", true, 0}};
    for (const auto& [each_status, arguments, is_sent, records] : steps) {
        set_status(status, each_status);
        EXPECT_EQ(event(arguments).find("notify") != string::npos, is_sent) << arguments;
        ASSERT_EQ(outstandingTraps.size(), records) << arguments;
        if (records > 0) {
            EXPECT_EQ(outstandingTraps[0]->statusUint, each_status);
        }
    }
}

// A re-check that fails counts as well; a cursor behind the end begins anew.
TEST_F(Outstanding, OneRecheckASecondAndEachOnceAMinute) {
    const int32_t enclosure = var_at(COLID_tsEnclStatus, 2);
    const int32_t folder = var_at(COLID_tsDiskFolderStatus, 1);
    answer_status("TsDiskFolder", 21, "Down");
    set_status(status, 2);
    set_status(enclosure, 2);
    set_status(folder, 2);
    for (const char* arguments : {"203 12 0 0 0", "207 21 0 0 0", "205 7 0 0 0"})
        event(arguments);
    ASSERT_EQ(outstandingTraps.size(), 3U);
    outstandingTrapCursor = 3;
    fake_api_mgr::documents.clear();
    EXPECT_EQ(check(), "refresh tsController\n");
    EXPECT_EQ(check(kSecondUs - 1), "");
    EXPECT_EQ(check(1).find("api Get TsDiskFolder 64702.21\n"), 0);  // is gone
    EXPECT_EQ(outstandingTraps.size(), 2U);
    EXPECT_EQ(check(kSecondUs - 1), "");
    EXPECT_EQ(check(1), "refresh tsEnclosure\n");
    EXPECT_EQ(check(kSecondUs), "");  // none is due
    EXPECT_EQ(check(57 * kSecondUs), "refresh tsController\n");
}

}  // namespace
