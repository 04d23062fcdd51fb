#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/forceTrap.h"

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/tableRefresh.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapQueue.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibValues.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"
#include "tests/unit/core/fakes/transcript.h"
#include "tests/unit/core/trapWorld.h"

namespace {

using std::string;

class ForceTrap : public TrapWorld {
  protected:
    /** What a SET of "ForceTrap" on a row queues; the log lines when it is refused. */
    static string force(int col_id, int32_t row, int32_t parent = 1) {
        const int32_t variable = var_at(col_id, row, parent);
        trapsToSend.clear();
        forceTrapCommand = "before";
        transcript::take();
        if (cols[col_id].set_fn(variable) != 0) {
            EXPECT_TRUE(trapsToSend.empty());
            EXPECT_EQ(forceTrapCommand, "before");
            return transcript::take();
        }
        EXPECT_EQ(trapsToSend.size(), 1U);
        EXPECT_EQ(trapsToSend.back()->alertString, "@@@");
        return forceTrapCommand;
    }
};

TEST_F(ForceTrap, ComposesTheCommandOfItsRow) {
    verbose = false;
    const std::tuple<int, int32_t, int32_t, const char*> rows[] = {
        {COLID_tsCtlrForceTrap, 1, 1, "37 4 8 203 11 0 0 0 @@@"},
        {COLID_tsDiskForceTrap, 2000, 1, "13 1 37 202 2000 0 0 0 @@@"},
        {COLID_tsEnclForceTrap, 2, 1, "12 1 100 205 2 0 0 0 @@@"},
        {COLID_tsCtlrFanForceTrap, 2, 2, "29 1 98 204 2 1 6 0 @@@"},
        {COLID_tsCtlrPowerForceTrap, 4, 2, "29 1 43 204 2 2 4 0 @@@"},
        {COLID_tsCtlrVoltageForceTrap, 3, 1, "29 1 34 204 1 4 3 0 @@@"},
        {COLID_tsCtlrTempForceTrap, 7, 2, "29 1 48 204 2 3 7 0 @@@"},
        {COLID_tsEnclFanForceTrap, 6, 100, "12 5 28 206 100 1 6 0 @@@"},
        {COLID_tsEnclIoModForceTrap, 2, 3, "12 6 35 206 3 5 2 0 @@@"},
        {COLID_tsEnclAlarmForceTrap, 1, 3, "12 7 37 206 3 6 1 0 @@@"},
        {COLID_tsDiskFolderForceTrap, 1, 1, "18 24 14 207 21 0 0 0 @@@"},
        {COLID_tsVolumeForceTrap, 1, 1, "15 1 60 208 31 0 0 0 @@@"},
        {COLID_tsServerForceTrap, 1, 1, "23 1 301 209 51 0 0 0 @@@"},
        {COLID_tsCacheForceTrap, 2, 1, "29 1 47 210 2 0 0 0 @@@"},
        {COLID_tsTsForceTrap, 1, 1, "7 7 7 211 1 0 0 0 @@@"},
        {COLID_tsUPSForceTrap, 1, 1, "29 1 22 212 61 0 0 0 @@@"},
    };
    for (const auto& [col_id, row, parent, command] : rows)
        EXPECT_EQ(force(col_id, row, parent), command);
    ASSERT_EQ(trapsToSend.size(), 1U);
    EXPECT_EQ(trapsToSend.back()->trapNum, 212);
    EXPECT_EQ(trapsToSend.back()->eventIdB, 1);
    vars[var_at(COLID_tsVolumeApiIndex, 1)].uint = 4294967295U;
    EXPECT_EQ(force(COLID_tsVolumeForceTrap, 1), "15 1 60 208 4294967295 0 0 0 @@@");
    vars[var_at(COLID_tsCtlrFanApiIndex, 1, 2)].uint = 0x80000000;
    EXPECT_EQ(force(COLID_tsCtlrFanForceTrap, 1, 2), "29 1 98 204 2 1 2147483646 0 @@@");
}

TEST_F(ForceTrap, RefusesRowsWithoutAnObject) {
    verbose = true;
    const std::tuple<int, int32_t, const char*> rows[] = {
        {COLID_tsVolumeForceTrap, 2, "volume does not exist"},
        {COLID_tsVolumeForceTrap, 2000, "volume index too large"},
        {COLID_tsServerForceTrap, 500, "server index too large"},
        {COLID_tsDiskFolderForceTrap, 500, "disk folder index too large"},
        {COLID_tsUPSForceTrap, 100, "ups index too large"},
    };
    for (const auto& [col_id, row, log] : rows)
        EXPECT_EQ(force(col_id, row), "log 7 " + string(log) + "$\n");
    EXPECT_NE(cols[COLID_tsVolumeForceTrap].set_fn(cols[COLID_tsVolumeForceTrap].first_var + 1), 0);
}

TEST_F(ForceTrap, CommandOfTheManager) {
    verbose = true;
    const int32_t variable = cols[COLID_forceTrapCommand].first_var;
    vars[variable].str = "1 2 3 201 4 5 6 7 x@@@y";
    EXPECT_EQ(cols[COLID_forceTrapCommand].set_fn(variable), 0);
    EXPECT_EQ(transcript::take(), "log 7 NMS's ForceTrap payload: 1 2 3 201 4 5 6 7 x@@@y$\n");
    EXPECT_EQ(trapsToSend.back()->trapArgD, 7);
    EXPECT_TRUE(is_cached(variable));
    vars[variable].str = "1 2 3";
    EXPECT_EQ(cols[COLID_forceTrapCommand].set_fn(variable), 1);
    EXPECT_EQ(forceTrapCommand, "1 2 3");
    EXPECT_EQ(trapsToSend.size(), 1U);
}

}  // namespace
