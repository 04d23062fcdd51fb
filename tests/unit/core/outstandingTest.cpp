#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/outstandingTraps.h"

#include "apiMgmt/common/platform/clock.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/outstandingCheck.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"
#include "tests/unit/core/fakes/fakeClock.h"
#include "tests/unit/core/fakes/transcript.h"
#include "tests/unit/core/trapWorld.h"

namespace {

using std::string;

constexpr int64_t kMinuteUs = 60 * kSecondUs;

/** Log lines and strings; outstandingModelTest covers the rules. Controller 2 has API index 12. */
class Outstanding : public TrapWorld {
  protected:
    const int32_t status = var_at(COLID_tsCtlrStatus, 2);

    static string event(const string& arguments) { return run("1 2 3 " + arguments + " a@@@text"); }

    /** Returns the transcript of one re-check, some time later. */
    static string check(int64_t later_us = kMinuteUs) {
        fake_clock::advance(later_us);
        check_outstanding_traps();
        return transcript::take();
    }

    static void expect_logged(const string& course, const string& line) {
        EXPECT_NE(course.find("log 7 " + line + "$\n"), string::npos) << line << " in\n" << course;
    }
};

TEST_F(Outstanding, LogsWhyARecordIsRemoved) {
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

}  // namespace
