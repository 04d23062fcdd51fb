// Tests that need the daemon's fixed paths: log files and settings. They run only in the sandbox.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <vector>

#include "apiMgmt/common/threadpool/appLogger.h"
#include "apiMgmt/common/threadpool/appSysLogger.h"
#include "apiMgmt/common/threadpool/logTask.h"
#include "apiMgmt/common/utils/generalUtils.h"
#include "apiMgmt/common/utils/textFile.h"
#include "apiMgmt/common/wirelink/wireLink.h"
#include "apiMgmt/snmpSubagent/snmpSubagentComm/snmpSubagentComm.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/settings/subagentConf.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/diagnostics.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"
#include "tests/unit/common/recordingLogger.h"
#include "tests/unit/core/fakes/fakeClock.h"

namespace {

using std::string;

const char* const kLog = "/var/log/snmpSubagent.log";
const char* const kMovedLog = "/var/log/snmpSubagent.old";
const char* const kConf = "/etc/snmpSubagent.conf";
const char* const kDebugFile = "/mnt/cores/logs/apimgrDebuglog.txt";
const char* const kOldDebugFile = "/mnt/cores/logs/apimgrDebuglog_old.txt";

string read_file(const string& path) {
    return ReadTextFile(path).value_or("");
}

constexpr auto kOwnersAlone = std::filesystem::perms::owner_read | std::filesystem::perms::owner_write;

void write_file(const string& path, const string& text) {
    std::ofstream(path) << text;
}

class LogFile : public testing::Test {
  protected:
    LogFile() {
        setenv("TZ", "UTC", 1);
        tzset();
        fake_clock::set(fake_clock::kStart_us);
        std::filesystem::remove_all(kLog);
        std::filesystem::remove_all(kMovedLog);
    }

    static string take() {
        const string text = read_file(kLog);
        std::filesystem::remove_all(kLog);
        return text;
    }
};

TEST_F(LogFile, LineHasAHeaderUnlessItsLevelIsZero) {
    subagent_log(4, "file.cpp", "operation", 12, "number %d\n", 5);
    EXPECT_EQ(std::filesystem::status(kLog).permissions(), kOwnersAlone);
    EXPECT_EQ(take(), "11/14/2023 22:13:20  file.cpp: operation(12): number 5\n");
    subagent_log(0, "file.cpp", "operation", 12, "raw\n\n");
    EXPECT_EQ(take(), "raw\n\n");
    subagent_log(7, "f", "o", 1, "%s", "");
    EXPECT_EQ(take(), "11/14/2023 22:13:20  f: o(1): ");
    setenv("TZ", "XST3:30", 1);
    tzset();
    iso_log_lines = true;
    subagent_log(4, "f", "o", 1, "text\n");
    iso_log_lines = false;
    EXPECT_EQ(take(), "2023-11-14T18:43:20-03:30 warning f: o(1): text\n");
}

TEST_F(LogFile, MessageIsCutAt3999CharactersAndEndsItsLine) {
    subagent_log(0, "f", "o", 1, "%s", string(3999, 'x').c_str());
    EXPECT_EQ(take(), string(3999, 'x'));
    for (const size_t length : {4000, 5000}) {
        subagent_log(0, "f", "o", 1, "%s", string(length, 'x').c_str());
        EXPECT_EQ(take(), string(3998, 'x') + "\n");
    }
    subagent_log(7, "f", "o", 1, "*ipXmlString: %s", "<x/>");
    subagent_log(4, "f", "o", 2, "next\n");
    EXPECT_NE(take().find("f: o(1): *ipXmlString: <x/>\n11/14/2023"), string::npos);
}

TEST_F(LogFile, IsCutToItsFirst2000000BytesWhenItIsTooLong) {
    string text(3000001, 'n');
    for (size_t i = 0; i < 2000000; ++i)
        text[i] = static_cast<char>('a' + i % 17);
    write_file(kLog, text.substr(0, 3000000));
    truncate_subagent_log();
    EXPECT_EQ(std::filesystem::file_size(kLog), 3000000U);
    subagent_log(0, "f", "o", 1, "%s", "x");  // truncation also removes the line that makes it too long
    EXPECT_EQ(take(), text.substr(0, 2000000));
    write_file(kLog, text);
    truncate_subagent_log();
    EXPECT_EQ(take(), text.substr(0, 2000000));
    truncate_subagent_log();  // no file
    EXPECT_FALSE(std::filesystem::exists(kLog));
}

TEST_F(LogFile, ThatCannotBeOpenedLosesTheLineAlone) {
    std::filesystem::create_directory(kLog);
    subagent_log(4, "f", "o", 1, "lost\n");
    truncate_subagent_log();
    EXPECT_TRUE(std::filesystem::is_empty(kLog));
    std::filesystem::remove(kLog);
    subagent_log(0, "f", "o", 1, "kept\n");
    EXPECT_EQ(take(), "kept\n");
}

// In a separate process, because it redirects standard output.
TEST_F(LogFile, TakesStandardOutputAndFollowsAMovedFile) {
    const auto story = [] {
        redirect_stdout_to_log();
        printf("printed\n");
        subagent_log(0, "f", "o", 1, "logged\n");
        rename(kLog, kMovedLog);
        printf("still the old file\n");
        reopen_redirected_log();
        subagent_log(0, "f", "o", 1, "the new file\n");
        printf("printed there\n");
        close_redirected_log();
        subagent_log(0, "f", "o", 1, "after the close\n");
        _exit(0);
    };
    EXPECT_EXIT(story(), testing::ExitedWithCode(0), "");
    EXPECT_EQ(read_file(kMovedLog), "printed\nlogged\nstill the old file\n");
    EXPECT_EQ(take(), "the new file\nprinted there\nafter the close\n");
}

TEST_F(LogFile, HexDumpHasItsColumns) {
    snmp_hexDump(
        "\x01"
        "AZ~\x7f\xff 0123456789/",
        18, "title");
    EXPECT_EQ(take(),
              "--------- title --------- (18 bytes)\n"
              "+0000   01 41 5A 7E  7F FF 20 30  31 32 33 34  35 36 37 38   .AZ~.. 012345678 \n"
              "+0010   39 2F                                                9/               \n");
    context_backtrace();
    const string context = take();
    EXPECT_EQ(context.rfind("calling getcontext()...\nreturned from getcontext()\n", 0), 0U);
    EXPECT_NE(context.find("\nrip="), string::npos);
}

// ---- the debug file of the application log ----

class DebugFile : public LogFile {
  protected:
    DebugFile() {
        std::filesystem::create_directories("/mnt/cores/logs");
        std::filesystem::remove(kDebugFile);
    }

    void log(const string& text, int32_t level = 8, const string& category = "snmpSubagent") {
        logger_.Log({level, true, "f", "o", 1, category, text});
    }

    APPSysLogger logger_{"test", false};
};

TEST_F(DebugFile, GetsTheLinesOfEnabledModulesWithTheTime) {
    log("one");
    EXPECT_EQ(std::filesystem::status(kDebugFile).permissions(), kOwnersAlone);
    std::filesystem::permissions(kDebugFile, std::filesystem::perms::all);
    log("two\n%s", 7, "Cache");
    EXPECT_EQ(std::filesystem::status(kDebugFile).permissions(), kOwnersAlone);
    APPLogger::SetModules("1|2");
    log("of a module that is off", 8, "Cache");
    log("of a module that is on", 7, "apimanager");
    log("of no module");
    APPLogger::SetModules("0");
    EXPECT_EQ(read_file(kDebugFile),
              "11/14/2023-22:13:20 one\n11/14/2023-22:13:20 two\n%s\n"
              "11/14/2023-22:13:20 of a module that is on\n11/14/2023-22:13:20 of no module\n");
}

TEST_F(DebugFile, IsPutAsideAbove1000000Bytes) {
    const string line = "11/14/2023-22:13:20 x\n";
    write_file(kOldDebugFile, "older");
    write_file(kDebugFile, string(1000000 - line.size(), 'n'));
    log("x");
    EXPECT_EQ(std::filesystem::file_size(kDebugFile), 1000000U);
    log("x");
    EXPECT_EQ(read_file(kOldDebugFile), "older");
    const string full = read_file(kDebugFile);
    EXPECT_EQ(full, string(1000000 - line.size(), 'n') + line + line);
    log("x");
    EXPECT_EQ(read_file(kDebugFile), line);
    EXPECT_EQ(read_file(kOldDebugFile), full);
}

// The path of a line from subagent_log to the application log.
TEST_F(LogFile, PassesItsLinesOnByLevelWithoutTheirNewline) {
    const std::tuple<int, string, int, string> rows[] = {
        {0, "line\n", 8, "line"}, {1, "line", 2, "line"}, {2, "two\n\n", 3, "two\n"},
        {3, "\n", 4, ""},         {4, "", 5, ""},         {5, string(4000, 'x') + "\n", 6, string(3998, 'x')},
        {6, "six", 7, "six"},     {7, "7", 8, "7"},       {8, "8", 8, "8"},
        {100, "high", 8, "high"}, {-1, "low", 8, "low"},
    };
    LogRecord record;
    std::optional<APPLogger> owner(std::in_place);
    ASSERT_TRUE(APPLogger::RegisterLogTask(new LOGTask(record.MakeLogger())));
    std::vector<string> wanted;
    for (const int32_t log_level : {5, 8}) {
        APPLogger::SetLogLevel(log_level);
        for (const auto& [level, text, app_level, passed_on] : rows) {
            subagent_log(level, "file.cpp", "operation", 34, "%s", text.c_str());
            if (app_level <= log_level)
                wanted.push_back(std::to_string(app_level) + "|snmpSubagent|" + passed_on);
        }
    }
    EXPECT_EQ(record.WaitFor(wanted.size()), wanted);
    const LOGMessage last = record.last();
    EXPECT_EQ(last.file + " " + last.func + " " + std::to_string(last.line), "file.cpp operation 34");
    owner.reset();
    record.WaitForEndOfLogger();
}

// ---- settings ----

string settings() {
    std::ostringstream text;
    text << conf_rwcommunity << '|' << conf_rocommunity << '|' << conf_trapsEnabled << '|' << conf_trapDest
         << '|' << conf_trapPort << '|' << conf_trapCommun << '|' << conf_trapVer << '|'
         << conf_controllerIdLeader << '|' << conf_controllerIdThis << '|' << conf_controllerIndexThis << '|'
         << verbose.load() << '|' << sendTestTrap << '|' << iso_log_lines;
    return text.str();
}

// Must be the first test, because it needs the initial values of the process.
TEST(Settings, StayAsTheProcessStartedWithoutAFile) {
    const char* const kStart = "||0||0||1|0|0|0|0|0|0";
    EXPECT_EQ(settings(), kStart);
    std::filesystem::remove(kLog);
    std::filesystem::remove_all(kConf);
    EXPECT_EQ(read_snmpSubagent_conf(), 1);
    write_file(kConf, "");
    EXPECT_EQ(read_snmpSubagent_conf(), 1);
    std::filesystem::remove(kConf);
    std::filesystem::create_directory(kConf);
    EXPECT_EQ(read_snmpSubagent_conf(), 1);
    std::filesystem::remove(kConf);
    EXPECT_EQ(settings(), kStart);
    const string log = read_file(kLog);
    EXPECT_NE(log.find("): Unable to open file: /etc/snmpSubagent.conf\n"), string::npos);
    EXPECT_NE(log.find("): conf file is empty\n"), string::npos);
    EXPECT_NE(log.find("): Unable to read file: /etc/snmpSubagent.conf\n"), string::npos);
}

TEST(Settings, AreReadAsTheyStand) {
    const string kDefaults = "||0|172.255.255.255|666|nevermind|1|666|666|0|0|0|0";
    const auto changed = [&](int place, const string& value) {
        std::vector<string> parts;
        std::istringstream all(kDefaults);
        for (string part; std::getline(all, part, '|');)
            parts.push_back(part);
        parts[static_cast<size_t>(place)] = value;
        string text;
        for (const string& part : parts)
            text += (text.empty() && &part == &parts[0] ? "" : "|") + part;
        return text;
    };
    const std::pair<string, string> rows[] = {
        {"# nothing\n", kDefaults},
        {"rwcommunity secret\nrocommunity   public\ntrapsEnabled yes\ntrapDest \t10.0.0.9\ntrapPort 162\n"
         "trapCommun traps\ntrapVer 2\ncontrollerIdLeader 1\ncontrollerIdThis 64702\ncontrollerIndexThis 2\n"
         "verbose yes\nsendTestTrap yes\nisoLog yes\n",
         "secret|public|1|10.0.0.9|162|traps|2|1|64702|2|1|1|1"},
        {"rocommunity two words \n", changed(1, "two words ")},
        {"rocommunity **none**\n", kDefaults},
        {"trapsEnabled yes \n", kDefaults},
        {"verbose yes", kDefaults},  // the last line has no newline
        {"# trapDest was 10.0.0.1\ntrapDest 10.0.0.2\n", changed(3, "was 10.0.0.1")},
        {"trapDest\n10.0.0.1\n", changed(3, "")},
        {"trapPort 162abc\n", changed(4, "162")},
        {"trapPort=162\n", changed(4, "0")},
        {"controllerIndexThis 3\n", kDefaults},
        {string(489, '#') + "trapVer 2\n", changed(6, "2")},  // and 499
        {string(490, '#') + "trapVer 2\n", kDefaults},        // byte 500 is not read
        {string("trapVer 2\n\0trapPort 1\n", 22), changed(6, "2")},
    };
    std::filesystem::remove(kLog);
    for (const auto& [text, wanted] : rows) {
        write_file(kConf, text);
        EXPECT_EQ(read_snmpSubagent_conf(), 0);
        EXPECT_EQ(settings(), wanted) << text;
    }
    const string log = read_file(kLog);
    EXPECT_NE(log.find("): conf_controllerIndexThis is not 1 or 2: 3\n"), string::npos);
    EXPECT_EQ(log.find('\n'), log.size() - 1) << log;
}

// Starts a process of another user that occupies the API manager's path. Returns -1 without other users.
pid_t start_impostor() {
    int ready[2];
    EXPECT_EQ(pipe(ready), 0);
    const pid_t child = fork();
    if (child == 0) {
        if (setuid(65534) != 0)
            _exit(1);
        const WireLinkServer server(GENERALUtils::GetEndpoint(ENDPOINT_APIMGR));
        [[maybe_unused]] const ssize_t told = write(ready[1], "", 1);
        for (;;)
            pause();
    }
    close(ready[1]);
    char byte;
    const bool listens = read(ready[0], &byte, 1) == 1;
    close(ready[0]);
    if (listens)
        return child;
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(WEXITSTATUS(status), 1);  // it could not change to that user
    return -1;
}

TEST_F(LogFile, TellsOfAnotherUserAtTheApiManagersSocketWhoIsAskedNothing) {
    const pid_t impostor = start_impostor();
    if (impostor == -1)
        GTEST_SKIP() << "skipped 'needs another user than root'";
    EXPECT_EQ(SnmpSubagentComm().TryOpenSocketToApiMgr(), 1);
    EXPECT_NE(take().find("apimgr.sock: the listener runs as user 65534, which is not"), string::npos);
    kill(impostor, SIGKILL);
    waitpid(impostor, nullptr, 0);
    std::filesystem::remove("/tmp/apimgr.sock");
}

}  // namespace
