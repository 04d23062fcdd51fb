// Parts of the application log that need fixed paths: the debug file, and lines of subagent_log. Runs only in
// the sandbox.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <sstream>

#include "apiMgmt/common/threadpool/appLogger.h"
#include "apiMgmt/common/threadpool/appSysLogger.h"
#include "apiMgmt/common/threadpool/logTask.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"
#include "tests/unit/common/recordingLogger.h"
#include "tests/unit/core/fakes/fakeClock.h"

namespace {

namespace fs = std::filesystem;
using std::string;

const char* const kSubagentLog = "/var/log/snmpSubagent.log";
const char* const kFolder = "/mnt/cores/logs";
const char* const kDebugFile = "/mnt/cores/logs/apimgrDebuglog.txt";
const char* const kOldDebugFile = "/mnt/cores/logs/apimgrDebuglog_old.txt";

string read_file(const char* path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

void write_file(const string& path, const string& text) {
    std::ofstream(path) << text;
}

void stop_the_clock() {
    setenv("TZ", "UTC", 1);
    tzset();
    fake_clock::set(fake_clock::kStart_us);
}

class DebugFile : public testing::Test {
  protected:
    DebugFile() {
        stop_the_clock();
        fs::remove_all(kFolder);
        fs::create_directories(kFolder);
    }

    void log(const string& text, int32_t level = 8, const string& category = "snmpSubagent") {
        logger_.Log({level, true, "f", "o", 1, category, text});
    }

    APPSysLogger logger_{"test", false};
};

TEST_F(DebugFile, GetsTheLinesOfEnabledModulesWithTheTime) {
    log("one");
    struct stat status {};
    ASSERT_EQ(stat(kDebugFile, &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600U);
    fs::permissions(kDebugFile, fs::perms::all);
    log("two\n%s", 7, "Cache");
    EXPECT_EQ(fs::status(kDebugFile).permissions(), fs::perms::owner_read | fs::perms::owner_write);
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
    EXPECT_EQ(fs::file_size(kDebugFile), 1000000U);
    log("x");
    EXPECT_EQ(read_file(kOldDebugFile), "older");
    const string full = read_file(kDebugFile);
    EXPECT_EQ(full, string(1000000 - line.size(), 'n') + line + line);
    log("x");
    EXPECT_EQ(read_file(kDebugFile), line);
    EXPECT_EQ(read_file(kOldDebugFile), full);
}

// ---- the lines of subagent_log ----

class LinesOfTheSubagent : public testing::Test {
  protected:
    LinesOfTheSubagent() {
        stop_the_clock();
        fs::remove_all(kSubagentLog);
        owner_.emplace();
        EXPECT_TRUE(APPLogger::RegisterLogTask(new LOGTask(record_.MakeLogger())));
    }
    ~LinesOfTheSubagent() override {
        owner_.reset();
        record_.WaitForEndOfLogger();
    }

    LogRecord record_;
    std::optional<APPLogger> owner_;
};

TEST_F(LinesOfTheSubagent, ArePassedOnByLevel) {
    const int levels[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 100, -1};
    std::vector<string> wanted;
    APPLogger::SetLogLevel(5);
    for (const int level : levels)
        subagent_log(level, "f", "o", 1, "%d", level);
    for (const char* text : {"2|snmpSubagent|1", "3|snmpSubagent|2", "4|snmpSubagent|3", "5|snmpSubagent|4"})
        wanted.emplace_back(text);
    APPLogger::SetLogLevel(8);
    for (const int level : levels)
        subagent_log(level, "f", "o", 1, "%d", level);
    for (const char* text : {"8|snmpSubagent|0", "2|snmpSubagent|1", "3|snmpSubagent|2", "4|snmpSubagent|3",
                             "5|snmpSubagent|4", "6|snmpSubagent|5", "7|snmpSubagent|6", "8|snmpSubagent|7",
                             "8|snmpSubagent|8", "8|snmpSubagent|100", "8|snmpSubagent|-1"})
        wanted.emplace_back(text);
    EXPECT_EQ(record_.WaitFor(wanted.size()), wanted);
}

TEST_F(LinesOfTheSubagent, LoseOneNewlineAndKeepTheirPlace) {
    const std::pair<string, string> rows[] = {
        {"line\n", "line"}, {"line", "line"}, {"two\n\n", "two\n"},
        {"\n", ""},         {"", ""},         {string(4000, 'x') + "\n", string(3998, 'x')},
    };
    std::vector<string> wanted;
    for (const auto& [text, passed_on] : rows) {
        fs::remove(kSubagentLog);
        subagent_log(3, "file.cpp", "operation", 34, "%s", text.c_str());
        EXPECT_EQ(read_file(kSubagentLog), "11/14/2023 22:13:20  file.cpp: operation(34): " +
                                               (text.size() < 4000 ? text : passed_on + "\n"));
        wanted.push_back("4|snmpSubagent|" + passed_on);
    }
    EXPECT_EQ(record_.WaitFor(wanted.size()), wanted);
    const LOGMessage last = record_.last();
    EXPECT_EQ(last.file + " " + last.func + " " + std::to_string(last.line), "file.cpp operation 34");
}

}  // namespace
