#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapCommand.h"

#include "apiMgmt/snmpSubagent/snmpSubagentMain/settings/subagentConf.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/outstandingTraps.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibValues.h"
#include "tests/unit/core/trapWorld.h"

namespace {

using std::string;

string queued(const string& command, size_t scratch_size = kTrapCommandBuffer) {
    char scratch[kTrapCommandBuffer];
    if (ParseTrapCommand(command.c_str(), scratch, scratch_size) != 0)
        return "refused";
    const std::unique_ptr<TrapToSend> trap = std::move(trapsToSend.back());
    trapsToSend.pop_back();
    string text;
    for (const int32_t number : {trap->eventIdA, trap->eventIdB, trap->eventIdC, trap->trapNum,
                                 trap->trapArgA, trap->trapArgB, trap->trapArgC, trap->trapArgD})
        text += std::to_string(number) + " ";
    return text + "[" + trap->alertString + "]";
}

TEST(TrapCommandText, IsEightNumbersAndARest) {
    const std::pair<const char*, const char*> rows[] = {
        {"13 1 37 202 17 0 0 5 a@@@b c", "13 1 37 202 17 0 0 5 [a@@@b c]"},
        {"  1   2 3 4 5 6 7 8   x ", "1 2 3 4 5 6 7 8 [  x ]"},
        {"1 2 3 4 5 6 7 8 ", "1 2 3 4 5 6 7 8 []"},
        {"-1 +2 3x x4 0x5 6.9 4294967297 2147483648 ", "-1 2 3 0 0 6 1 -2147483648 []"},
        {"1\t2 3 4 5 6 7 8 9 ", "1 3 4 5 6 7 8 9 []"},
        {"1 2 3 4 5 6 7 8", "refused"},
        {"1 2 3 4 5 6 7          ", "refused"},
        {"", "refused"},
    };
    for (const auto& [text, result] : rows)
        EXPECT_EQ(queued(text), result) << text;
    const string command = "1 2 3 4 5 6 7 8 ";
    EXPECT_EQ(queued(command + string(600, 'x')), command + "[" + string(500 - command.size(), 'x') + "]");
    EXPECT_EQ(queued(command, command.size()), "refused");  // its last space does not fit
    EXPECT_EQ(queued(command, command.size() + 1), command + "[]");
    EXPECT_EQ(ParseTrapCommand("1 2 3 4 5 6 7 8 ", nullptr, 10), 1);
    EXPECT_TRUE(trapsToSend.empty());
}

class Command : public TrapWorld {};

TEST_F(Command, WritesWhatEveryNotificationSays) {
    const std::tuple<const char*, const char*, int32_t, const char*> rows[] = {
        {"1 -2 3 200 0 0 0 0 prefix@@@text", "1,-2,3", 2, "text"},
        {"1 2 3 200 0 0 0 5 prefix@@@text", "1,2,3", 1, "Alert Cleared - text"},
        {"1 2 3 200 0 0 0 4 a@@@b@@@c", "1,2,3", 2, "c"},
        {"1 2 3 999 0 0 0 0 @@@", "1,2,3", 2, ""},  // even if it is rejected later
    };
    for (const auto& [command, event_id, state, alert] : rows) {
        trapCompStatusText = "old";
        vars[cols[COLID_trapCompStatusText].first_var].str = "old";
        run(command);
        EXPECT_EQ(value_of(cols[COLID_trapEventId].first_var), "\"" + string(event_id) + "\"");
        EXPECT_EQ(trapAlertState, state);
        EXPECT_EQ(value_of(cols[COLID_trapAlertState].first_var), std::to_string(state));
        EXPECT_EQ(trapAlertText, alert);
        EXPECT_EQ(value_of(cols[COLID_trapAlertText].first_var), "\"" + string(alert) + "\"");
        EXPECT_EQ(value_of(cols[COLID_trapActionText].first_var), "\"no action needed\"");
        EXPECT_EQ(trapCompStatusText, "empty");
        EXPECT_EQ(vars[cols[COLID_trapCompStatusText].first_var].str, "old");
    }
    // The alert text is copied before the alert string is truncated.
    TrapToSend trap;
    trap.trapNum = 201;
    trap.alertString = string(250, 'x') + "@@@" + string(300, 'y');
    EXPECT_EQ(processSendTrapCmd(trap, false), 0);
    EXPECT_EQ(trapAlertText, string(300, 'y'));
    EXPECT_EQ(trap.alertString, string(250, 'x') + "@@@yy");
    EXPECT_EQ(trapMiscAlertText, trap.alertString);
}

TEST_F(Command, GoesByItsNumber) {
    const std::pair<const char*, const char*> rows[] = {
        {"4 4 4 0 0 0 0 0 ", "oid 1.3.6.1.6.3.1.1.5.1\n"},
        {"1 1 1 1 0 0 0 0  @@@hello", ".251.0.1\n  1.3.6.1.4.1.913.11000.2000.500.1.251 \"hello\"\n"},
        {"1 1 1 100 0 0 0 0 x @@@hello", ".251.0.100\n"},  // the mark must come first
        {"1 1 1 200 0 0 0 0 ", ".251.0.200\n  R.10.0"},
        {"1 1 1 201 0 0 0 0 what@@@why",
         ".251.0.201\n  R.10.0 gauge 64702\n  R.12.0 \"what@@@why\"\n  R.43.0"},
    };
    for (const auto& [command, part] : rows)
        EXPECT_NE(notification_of(command).find(part), string::npos) << notification_of(command);
    EXPECT_EQ(notification_of("1 1 1 100 0 0 0 0 x @@@hello").find("hello"), string::npos);
    for (const char* number : {"9", "99", "102", "199", "214", "-1"})
        EXPECT_EQ(run(string("1 1 1 ") + number + " 0 0 0 0 "),
                  string("1\nlog 4 unknown trapNum passed fron lumivant-app: ") + number + "$\n");
    EXPECT_TRUE(outstandingTraps.empty());
}

TEST_F(Command, ColdStartAndTestTrap) {
    conf_trapsEnabled = false;
    send_coldstart();
    EXPECT_TRUE(trapsToSend.empty());
    conf_trapsEnabled = true;
    send_coldstart();
    ASSERT_EQ(trapsToSend.size(), 1U);
    const TrapToSend& trap = *trapsToSend.front();
    EXPECT_EQ(trap.eventIdA * 100 + trap.eventIdB * 10 + trap.eventIdC, 444);
    EXPECT_EQ(trap.trapNum, 0);
    send_test_trap();
    EXPECT_EQ(trapEventId, "28,0,0");
    EXPECT_NE(transcript::take().find(".251.0.200\n"), string::npos);
}

}  // namespace
