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

// What the model does not look at: the log, and what else a command carries. Controller 2 has API index 12.
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

TEST_F(Outstanding, RecheckOfAColumnWithoutValuesStaysThere) {
    set_status(status, 2);
    set_status(var_at(COLID_tsEnclStatus, 1), 2);
    event("203 12 0 0 0");
    event("205 5 0 0 0");
    outstandingTrapCursor = 1;
    cols[COLID_tsEnclStatus].data_type = 0;
    EXPECT_EQ(check(), "refresh tsEnclosure\nlog 4 got SMI_BASETYPE_UNKNOWN$\n");
    EXPECT_EQ(outstandingTrapCursor, 1U);
}

}  // namespace
