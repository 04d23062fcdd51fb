#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "apiMgmt/common/utils/textFile.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/settings/subagentConf.h"
#include "tests/sourceFolder.h"
#include "tests/unit/layers/temporaryFolder.h"
#include "tests/unit/words.h"
#include "tools/checkconf/program.h"

using std::string;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

constexpr const char* kSettings = "/etc/snmpSubagent.conf";
constexpr const char* kStart = "/tmp/apps/snmpsubagent.conf";
constexpr const char* kKey = "/etc/wirelink.key";
constexpr const char* kMaster = "/etc/snmpd.conf";

/** A directory with the files that the package installs, and a session key. */
class Checkconf : public testing::Test {
  protected:
    Checkconf() {
        for (const char* folder : {"/etc", "/tmp/apps", "/mnt/root", "/var/run", "/var/log", "/usr/bin",
                                   "/usr/local/bin", "/usr/local/sbin", "/bin"})
            std::filesystem::create_directories(root_ + folder);
        for (const char* file : {"snmpSubagent.conf", "snmpd.conf"})
            Write(string("/etc/") + file, Shipped(file));
        Write(kStart, Shipped("start.conf"));
        for (const char* program : {"/usr/bin/killall", "/bin/ps", "/usr/bin/snmp"})
            Write(program, "", 0755);
        for (const char* link : {"/usr/local/sbin/snmpd", "/usr/local/bin/snmpget"})
            std::filesystem::create_symlink("/usr/bin/snmp", root_ + link);
        Write(kKey, "key\n", 0600);
    }

    static string Shipped(const string& file) {
        return ReadTextFile(SOURCE_FOLDER "/packaging/etc/" + file).value();
    }

    void Write(const string& path, const string& text, mode_t mode = 0600) {
        std::filesystem::remove(root_ + path);
        std::ofstream(root_ + path, std::ios::binary) << text;
        chmod((root_ + path).c_str(), mode);
    }

    /** Returns the exit status; the output is in out_. */
    int Run(const string& options = "--quiet") {
        Arguments arguments("checkconf --root " + root_ + " " + options);
        std::ostringstream out;
        const int status = checkconf::RunProgram(arguments.count(), arguments.values(), out, err_);
        out_ = out.str();
        return status;
    }

    const TemporaryFolder folder_;
    const string root_ = folder_.Path("root");
    string out_;
    std::ostringstream err_;
};

TEST_F(Checkconf, ReportsNothingForTheDefaultFiles) {
    EXPECT_EQ(Run(), 0);
    EXPECT_THAT(out_, IsEmpty());
    EXPECT_EQ(Run(""), 0);
    EXPECT_THAT(out_, HasSubstr(root_ + kStart + "\n  the daemon runs in the background\n"));
    EXPECT_THAT(out_, HasSubstr("notifications are off"));
    EXPECT_THAT(out_, HasSubstr("0 errors, 0 warnings\n"));
}

// All settings precede the first comment, and no comment contains their names: the parser ignores comments.
TEST_F(Checkconf, DefaultSettingsAreFoundAtTheirLines) {
    const string text = Shipped("snmpSubagent.conf");
    const size_t comments = text.find('#');
    for (const conf_setting& setting : conf_settings) {
        EXPECT_LT(text.find(setting.key), comments) << setting.key;
        EXPECT_EQ(text.find(setting.key, comments), string::npos) << setting.key;
    }
}

TEST_F(Checkconf, WarnsAboutUnexpectedInterpretations) {
    const std::pair<string, const char*> rows[] = {
        {"# trapDest was 10.0.0.1\ntrapDest 10.0.0.2\n",
         "line 1: trapDest is found in a comment, and its value is read from there; line 2 is ignored"},
        {"mytrapDest 10.0.0.1\n", "line 1: trapDest is found in the middle of the line"},
        {"trapsEnabled yes \n", "line 1: the value of trapsEnabled includes the space at its end"},
        {"trapsEnabled no\nverbose yes", "line 2: verbose has no newline at its end: the daemon ignores it"},
        {string(480, '#') + "\n#\n#\ntrapPort 16222222222222\n",
         "line 4: trapPort does not end within the bytes that the daemon reads"},
        {string(499, '#') + "\ntrapPort 162\n",
         "line 2: trapPort is beyond the 499 bytes that the daemon reads"},
        {string("trapVer 2\n\0trapPort 1\n", 22),
         "line 2: a zero byte; the daemon ignores the rest of the file"},
        {"trapPort 162abc\n", "line 1: trapPort is '162abc'; only its leading digits are read"},
        {"controllerIndexThis 3\n", "the daemon would log: conf_controllerIndexThis is not 1 or 2: 3"},
        {"trapsEnabel yes\n", "line 1: unknown setting 'trapsEnabel'"},
        {"trapsEnabled yes\ntrapDest 1.2.3.4.5\n", "the daemon would log: Invalid trap dest addr: 1.2.3.4.5"},
        {"trapsEnabled yes\ntrapDest 10.0.0.9\ntrapPort 70000\n", "trapPort is 70000: none arrives"},
        {"trapsEnabled yes\ntrapDest \n", "trapDest is empty: none is sent"},
        {"", "the daemon would log: conf file is empty"},
    };
    for (const auto& [text, warning] : rows) {
        Write(kSettings, text);
        EXPECT_EQ(Run(), text.find("rocommunity") == string::npos ? 1 : 2) << text;
        EXPECT_THAT(out_, HasSubstr("  warning: ")) << text;
        EXPECT_THAT(out_, HasSubstr(warning)) << text;
    }
}

TEST_F(Checkconf, DoesNotWarnAboutProperSettings) {
    const string rows[] = {
        "# nothing\n",
        "rocommunity\t public\n  trapVer 2\n",
        "rwcommunity **none**\nrocommunity public\n# the communities\n",
        "trapsEnabled yes\ntrapDest 10.0.0.9\ntrapPort 162\ntrapCommun traps\ntrapVer 3\n",
        "trapsEnabled yes\ntrapDest **none**\n",
        "trapPort 162\n" + string(600, '#') + "\n",
    };
    for (const string& text : rows) {
        Write(kSettings, text);
        EXPECT_EQ(Run(), 0) << text;
        EXPECT_THAT(out_, IsEmpty()) << text;
    }
}

TEST_F(Checkconf, WarnsAboutExposedCommunities) {
    Write(kSettings, "rocommunity public\n", 0640);
    EXPECT_EQ(Run(), 1);
    EXPECT_THAT(out_, HasSubstr("readable or writable by group or others; run chmod 600"));
    Write(kSettings, "rwcommunity public\n");
    EXPECT_EQ(Run(), 1);
    EXPECT_THAT(out_, HasSubstr("the self-test uses the write community"));
    Write(kSettings, "rocommunity hush \ntrapCommun hush hush\r\nrwcommunity hush\n");
    EXPECT_EQ(Run(""), 2);
    EXPECT_THAT(out_, Not(HasSubstr("hush")));  // they are never printed
}

TEST_F(Checkconf, ReportsErrorsIfTheDaemonWouldNotStart) {
    const std::tuple<const char*, string, const char*> rows[] = {
        {kStart, "", "no line of the form KEY=VALUE"},
        {kKey, "two words\n", "its first line is empty, too long, or contains other characters"},
        {kMaster, "rocommunity public\nagentXTimeout 60\n",
         "the last master line is missing or not exactly 'master agentx'"},
        {kMaster, "master agentx\nrocommunity other\n", "no rocommunity line for the self-test community"},
        {kMaster, "master agentx\nrocommunity public 10.0.0.0/8\n", "has no access from this machine"},
        {kMaster, "master agentx\nrocommunity public\nagentXSocket /x\n", "agentXSocket is set"},
        {"/usr/bin/snmp", "", "/usr/local/sbin/snmpd is not a program"},
    };
    for (const auto& [path, text, error] : rows) {
        const string before = ReadTextFile(root_ + path).value();
        Write(path, text);
        EXPECT_EQ(Run("--quiet --allow-warnings"), 2) << error;
        EXPECT_THAT(out_, HasSubstr("  ERROR: ")) << text;
        EXPECT_THAT(out_, HasSubstr(error)) << text;
        Write(path, before, before.empty() ? 0755 : 0600);
    }
    EXPECT_EQ(Run(), 0) << out_;
}

// snmpd itself gives the same results.
TEST_F(Checkconf, FindsTheAccessOfTheSelfTestCommunity) {
    const string hidden = "cannot read .1.3.6.1.4.1.913.11000.2000.500.1.2.7.0, which the daemon needs";
    const string unknown = "its access to .1.3.6.1.4.1.913.11000.2000.500.1.2.7.0 is not checked";
    const string granted = "the self-test community has access\n";
    const string by_view = "rocommunity public default -V v\n";
    const string array = ".1.3.6.1.4.1.913.11000.2000.500";
    const std::tuple<string, string, int> rows[] = {
        {by_view + "view v included .1.3.6.1.2.1.1\n", hidden, 2},
        {"rocommunity public default .1.3.6.1.2.1.1\n", hidden, 2},
        {"rocommunity public default " + array + "\n", granted, 0},
        {"rocommunity public default " + array + " other\n", hidden, 2},
        {"VIEW v included " + array + "\nROCOMMUNITY public localhost -V v\n", granted, 0},
        {by_view, hidden, 2},
        {by_view + "view v included .1\nview v excluded " + array + ".1.2\n", hidden, 2},
        {by_view + "view v excluded " + array + "\nview v included " + array + ".1\nview v excluded .1\n",
         granted, 0},
        {by_view + "view v included .1.3.6.1.2 0xf8\n", hidden, 2},
        {by_view + "view v included .1.3.6.1.4.1.913.11000.9 ff:7f\n", granted, 0},
        {by_view + "view v included .1.3.6.1.5 f0\nview v excluded .1.3.6.1.4\n", granted, 0},
        {by_view + "view v included .iso\n", unknown, 0},
        {"rwcommunity public 10.0.0.0/8 .1.3.6.1.2\nrocommunity public 127.0.0.0/255.0.0.0\n", granted, 0},
        {"rocommunity public 127.0.0.5\n", "has no access from this machine", 2},
        {"rocommunity public monitor\n", unknown, 0},
        {"com2sec someone default public\n", unknown, 0},
        {"includeFile x\n" + by_view, hidden + "; included files are not checked", 0},
    };
    for (const auto& [text, said, status] : rows) {
        Write(kMaster, "master agentx\n" + text);
        EXPECT_EQ(Run("--allow-warnings"), status) << text;
        EXPECT_THAT(out_, HasSubstr(said)) << text;
    }
}

TEST_F(Checkconf, ReportsAnErrorIfTheMasterAgentListensElsewhere) {
    const string elsewhere = "no agentAddress includes UDP port 161 at 127.0.0.1";
    const string unknown = "whether the self-test reaches snmpd there is not checked";
    const std::pair<const char*, string> rows[] = {
        {"agentaddress udp:1161", elsewhere},
        {"agentAddress udp:127.0.0.5:161", elsewhere},
        {"agentaddress tcp:161", elsewhere},
        {"agentaddress udp6:[::1]:161,[::1]:161", elsewhere},
        {"includeDir /x\nagentaddress udp:1161",
         elsewhere + ", where the self-test sends its requests; included files"},
        {"agentaddress udp:161, udp:1161", "agentAddress contains a space"},
        {"agentaddress udp:1161,monitor", unknown},
        {"agentaddress udp:161@lo", unknown},
        {"agentaddress udp:1161\nAGENTADDRESS UDP:161", ""},
        {"agentaddress LocalHost", ""},
        {"agentaddress udp:127.0.0.1:161", ""},
        {"agentaddress ,udp:1161", ""},
        {"agentaddress", ""},
    };
    for (const auto& [text, said] : rows) {
        Write(kMaster, string("master agentx\nrocommunity public\n") + text + "\n");
        const bool is_good = said.empty() || said == unknown || text[0] == 'i';
        EXPECT_EQ(Run("--allow-warnings"), is_good ? 0 : 2) << text;
        EXPECT_THAT(out_,
                    said.empty() ? testing::Matcher<string>(Not(HasSubstr("agentAddress"))) : HasSubstr(said))
            << text;
    }
}

TEST_F(Checkconf, SurvivesADirectoryInPlaceOfAFile) {
    for (const string path : {kMaster, kSettings}) {
        std::filesystem::remove(root_ + path);
        std::filesystem::create_directory(root_ + path);
        EXPECT_EQ(Run(), 2) << path;
    }
    EXPECT_THAT(out_, HasSubstr("cannot be read (Is a directory)"));
}

TEST_F(Checkconf, WarnsAboutUnsuitableMasterAgentOptions) {
    const std::pair<string, const char*> rows[] = {
        {"agentXTimeout 12\nagentXRetries 0\n", "agentXTimeout is 12 s"},
        {"agentXTimeout 60\n", "agentXRetries is not 0"},
        {"AGENTXTIMEOUT 60\nagentxretries 0\ncreateUser x SHA \"a passphrase\"\n", "contains passphrases"},
        {"createUser x SHA 1234567 AES 12345678\n", "createUser x: a passphrase has fewer than 8 characters"},
        {"rocomunity public\n", "unknown directive 'rocomunity'; do you mean rocommunity?"},
        {"trap2sink 10.0.0.9\ntrapsess -v 2c -c x 10.0.0.9\n", "receiver 10.0.0.9 occurs twice"},
        {"trapsess -Ci -v 3 -u x 10.0.0.9\n", "trapsess 10.0.0.9 without -e ENGINE-ID"},
        {"maxGetbulkResponses 21\n", "maxGetbulkResponses is not between 1 and 20"},
    };
    for (const auto& [text, warning] : rows) {
        Write(kMaster, "master agentx\nrocommunity \"public\"\n" + text, 0644);
        EXPECT_EQ(Run(), 1) << text;
        EXPECT_THAT(out_, HasSubstr(warning)) << text;
        EXPECT_EQ(Run("--allow-warnings"), 0);
    }
}

}  // namespace
