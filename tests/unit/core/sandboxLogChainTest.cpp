// The application log where it needs fixed paths: the debug file, syslog's socket, and the way of a line from
// subagent_log. Runs in the sandbox alone.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
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

TEST_F(DebugFile, BeginsAnewWhenItCannotBePutAside) {
    fs::create_directories(string(kOldDebugFile) + "/occupied");
    write_file(kDebugFile, string(1000001, 'n'));
    log("x");
    EXPECT_EQ(read_file(kDebugFile), "11/14/2023-22:13:20 x\n");
    EXPECT_TRUE(fs::is_directory(kOldDebugFile));
}

TEST_F(DebugFile, ThatCannotBeOpenedLosesTheLineAlone) {
    fs::create_directory(kDebugFile);
    log("lost");
    EXPECT_TRUE(fs::is_empty(kDebugFile));
    fs::remove_all(kFolder);
    log("lost");
    EXPECT_FALSE(fs::exists(kFolder));
    fs::create_directory(kFolder);
    log("kept");
    EXPECT_EQ(read_file(kDebugFile), "11/14/2023-22:13:20 kept\n");
}

// ---- syslog ----

class SyslogSocket {
  public:
    SyslogSocket() : descriptor_(socket(AF_UNIX, SOCK_DGRAM, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        string("/dev/log").copy(address.sun_path, sizeof address.sun_path - 1);
        EXPECT_EQ(bind(descriptor_, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    }
    ~SyslogSocket() {
        close(descriptor_);
        unlink("/dev/log");
    }
    SyslogSocket(const SyslogSocket&) = delete;
    SyslogSocket& operator=(const SyslogSocket&) = delete;

    string take() const {
        constexpr int only_a_failure_waits_ms = 60'000;
        pollfd ready{descriptor_, POLLIN, 0};
        char text[1000];
        if (poll(&ready, 1, only_a_failure_waits_ms) != 1)
            return "nothing";
        const ssize_t length = recv(descriptor_, text, sizeof text, 0);
        return {text, static_cast<size_t>(std::max<ssize_t>(length, 0))};
    }

  private:
    int descriptor_;
};

TEST(Syslog, GetsTheLineThroughTheTask) {
    const SyslogSocket socket;
    const APPLogger owner;
    ASSERT_TRUE(APPLogger::RegisterLogTask(
        new LOGTask(std::make_unique<APPSysLogger>("/usr/sbin/snmpSubagent", false))));
    SUBAGENT_LOG(warning, "disk %d is 100 %% full\n", 7);
    EXPECT_THAT(socket.take(), testing::MatchesRegex("<12>.* /usr/sbin/snmpSubagent: level\\(4\\) "
                                                     "category\\(snmpSubagent\\) "
                                                     "message\\(disk 7 is 100 % full\\)"));
    APPLogger::headerInclude = true;
    subagent_log(3, "a.cpp", "run", 12, "no newline");
    EXPECT_THAT(socket.take(), testing::MatchesRegex("<11>.* /usr/sbin/snmpSubagent: level\\(3\\) "
                                                     "category\\(snmpSubagent\\) file\\(a.cpp\\) "
                                                     "func\\(run\\) line\\(12\\) message\\(no newline\\)"));
    APPLogger::headerInclude = false;
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

TEST_F(LinesOfTheSubagent, AreLostInBothWhenTheirFileCannotBeOpened) {
    fs::create_directory(kSubagentLog);
    subagent_log(3, "f", "o", 1, "lost");
    fs::remove(kSubagentLog);
    subagent_log(3, "f", "o", 1, "kept");
    EXPECT_EQ(record_.WaitFor(1), std::vector<string>{"4|snmpSubagent|kept"});
}

// The log task's thread is never joined: it works on while the process ends around it.
TEST(EndOfTheProcess, DoesNotDisturbTheLogTask) {
    const auto story = [] {
        APPLogger::RegisterLogTask(new LOGTask(std::make_unique<APPSysLogger>("test", false)));
        APPLogger::SetLogLevel(8);
        for (int i = 0; i < 500; ++i)
            subagent_log(i % 2 == 0 ? 0 : 6, "f", "o", 1, "line %d\n", i);
        exit(0);
    };
    EXPECT_EXIT(story(), testing::ExitedWithCode(0), "");
}

}  // namespace
