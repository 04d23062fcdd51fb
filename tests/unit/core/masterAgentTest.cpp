#include "apiMgmt/snmpSubagent/snmpSubagentMain/masterAgent.h"

#include <filesystem>

#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/masterAgentState.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/settings/subagentConf.h"
#include "tests/unit/core/fakes/fakeAgent.h"
#include "tests/unit/core/fakes/mibWorld.h"
#include "tests/unit/layers/temporaryFolder.h"

namespace {

using std::string;

class MasterAgent : public MibWorld {
  protected:
    MasterAgent() { fake_clock::write_sleeps(true); }
};

class PidFile : public MasterAgent {
  protected:
    void write(const string& text) const { folder.Write("pid", text); }

    // Returns the result and the log, with PATH instead of the path of the file.
    string read() const {
        const int pid = read_pid_file(path.c_str());
        string lines = transcript::take();
        ReplaceAll(lines, path, "PATH");
        return lines + std::to_string(pid);
    }

    const TemporaryFolder folder;
    const string path = folder.Path("pid");
};

TEST_F(PidFile, BesideItIsTheEngineWhichKeepsItsNameCountsAndAcceptsNothingElse) {
    const auto kept = [&] {
        EXPECT_TRUE(keep_snmp_engine(folder.Path("")));
        return folder.Read("snmpd.conf");
    };
    const string first = kept();
    EXPECT_TRUE(first.starts_with("oldEngineID 0x80001f8880") && first.ends_with("\nengineBoots 0\n"))
        << first;
    EXPECT_EQ(kept(), first.substr(0, first.find('\n')) + "\nengineBoots 1\n");
    folder.Write("snmpd.conf", "dlmod x /tmp/x.so\noldEngineID 0xab\nengineBoots 7\noldEngineID ;x\n");
    EXPECT_EQ(kept(), "oldEngineID 0xab\nengineBoots 8\n");
    std::filesystem::permissions(folder.Path(""), std::filesystem::perms::group_write,
                                 std::filesystem::perm_options::add);
    EXPECT_FALSE(keep_snmp_engine(folder.Path("")));
    transcript::take();
}

TEST_F(PidFile, GivesAPidThatMayBe) {
    const std::pair<const char*, const char*> rows[] = {
        {"  4711\n", "4711"},
        {"100000", "log 4 invalid PID in pid file: 100000, temp_buf: 100000$\n-1"},
        {"-4711", "log 4 invalid PID in pid file: -4711, temp_buf: -4711$\n-1"},
        {"snmpd", "log 4 invalid PID in pid file: 0, temp_buf: snmpd$\n-1"},
        {"000004711", "4711"},
        {"00000047110000", "log 4 PID file read has invalid byte count: 10, temp_buf: 0000004711$\n-1"},
        {"",
         "log 4 PID file read was zero, so we'll sleep and then try it one more time$\nsleep 1000000 us\n"
         "log 4 PID file read has invalid byte count: 0, temp_buf: $\n-1"},
    };
    for (const auto& [text, course] : rows) {
        write(text);
        EXPECT_EQ(read(), course) << text;
    }
}

TEST_F(PidFile, IsAwaitedForAWhile) {
    string tries;
    for (int i = 0; i < 10; ++i)
        tries += "log 7 Retry opening file: PATH.$\nsleep 10000 us\n";
    EXPECT_EQ(read(), tries + "log 4 Unable to open file: PATH$\n-1");

    bool is_written = false;
    transcript::on("sleep 10000 us", [&](const string&) { write(is_written ? "" : "4711"); });
    EXPECT_EQ(read(), "log 7 Retry opening file: PATH.$\nsleep 10000 us\n4711");
    write("");
    transcript::on("sleep 1000000 us", [&](const string&) { write("4712\n"); });
    EXPECT_EQ(read(),
              "log 4 PID file read was zero, so we'll sleep and then try it one more time$\nsleep 1000000 "
              "us\n4712");
    std::filesystem::remove(path);
    std::filesystem::create_directory(path);
    EXPECT_EQ(read(), "log 4 Unable to read file: PATH$\n-1");
}

TEST_F(MasterAgent, MayStayAtASaneSizeOnly) {
    const std::tuple<int, const char*, string> rows[] = {
        {4711, "  PID   RSS\n 4711 50000\n", "0"},
        {4711, "  PID   RSS\n   4711      5000   more\n", "0"},
        {4711, "  PID   RSS\n 4711 50001\n", "log 4 snmpd mem usage too high: 50001$\n1"},
        {4711, "  PID   RSS\n 471 5000\n",
         "log 4 1st token did not match: ps_output:  471 5000\n: snmpd_pid: 4711$\n1"},
        {4711, "  PID   RSS\n 4711\n", "log 4 found no 2nd token:  4711\n, snmpd_pid: 4711$\n1"},
        {4711, "  PID   RSS\n 4711 0\n",
         "log 4 failed to find res mem usage:  4711 0\n, snmpd_pid: 4711$\n1"},
        {4711, "  PID   RSS\n", "log 4 no 1st or 2nd line of output from ps command:   PID   RSS\n$\n1"},
        {4711, nullptr, "log 4 failed to popen: errno: 11$\n1"},
        {-1, "  PID   RSS\n   -1 5000\n", "1"},
    };
    for (const auto& [pid, output, course] : rows) {
        snmpd_pid = pid;
        fake_agent::output_of = [&](const string&) { return output; };
        const string asked = pid == -1 ? "" : "open /bin/ps -o pid,rss 4711\n";
        const bool has_to_go = snmpd_using_too_much_mem();
        EXPECT_EQ(transcript::take() + std::to_string(has_to_go), asked + course);
    }
}

TEST_F(MasterAgent, IsKilledBySignal6AndThen9) {
    const string nine = "log 7 calling popen() for killall -9...$\nopen /usr/bin/killall -9 -v snmpd 2>&1\n";
    const string six = "log 7 calling popen() for killall -6...$\nopen /usr/bin/killall -6 -v snmpd 2>&1\n";
    const string long_line(120, 'x');
    const string output = "snmpd(12): killed\n" + long_line + "\n";
    fake_agent::output_of = [&](const string&) { return output.c_str(); };
    const string lines = "log 7     snmpd(12): killed$\nlog 7     " + long_line.substr(0, 99) +
                         "\nlog 7     " + long_line.substr(99) + "$\nsleep 10000 us\n";
    kill_snmpd();
    EXPECT_EQ(transcript::take(), six + "log 7 output from killall -6:$\n" + lines + nine +
                                      "log 7 output from killall -9:$\n" + lines);

    fake_agent::output_of = [](const string& command) {
        return command.find("-9") != string::npos ? nullptr : "";
    };
    kill_snmpd();
    EXPECT_EQ(transcript::take(), six + "log 7 output from killall -6:$\nsleep 10000 us\n" + nine +
                                      "log 4 failed to popen for killall -9: errno: 11$\nsleep 10000 us\n");

    fake_agent::output_of = [](const string&) { return nullptr; };
    kill_snmpd();  // the second command is then omitted
    EXPECT_EQ(transcript::take(), six + "log 4 failed to popen for killall -6: errno: 11$\nsleep 10000 us\n");
}

TEST_F(MasterAgent, SelfTestFiresTheNextGet) {
    verbose = false;
    conf_rwcommunity = "write";
    conf_rocommunity = "it's secret";
    const string command = "/usr/local/bin/snmpget -r 0 -v2c -c [it's secret] localhost OID-OF-10.0 &";
    uint8_t& flags = vars[COLID_selfTestVersion].flags;
    snmpSubagentComm->set_agentx_state(true);
    flags |= VAR_FLAG_delivered;
    EXPECT_EQ(check_snmpget(), 0);
    EXPECT_EQ(transcript::take(), "open " + command + "\n");
    EXPECT_EQ(flags & VAR_FLAG_delivered, 0);
    EXPECT_TRUE(snmpSubagentComm->agentx_ok());

    conf_rocommunity = "other";  // the command was built on first use
    flags |= VAR_FLAG_delivered;
    EXPECT_EQ(check_snmpget(), 0);
    EXPECT_EQ(transcript::take(), "open " + command + "\n");
}

}  // namespace
