#include "apiMgmt/common/utils/resourceMgmt.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <string>

#include "tests/unit/common/fakeSleep.h"
#include "tests/unit/common/fakeSyslog.h"
#include "tests/unit/layers/temporaryFolder.h"

using testing::ElementsAre;

// The daemon's fixed paths must not affect the real system: its working directory is only recorded, and its
// pid file is in a directory of the test.

namespace {

std::string working_folder = "/";
std::string changed_folder;
bool folder_can_be_changed = true;
std::string pid_folder = "/nonexistent";
std::string removed_file;

constexpr char kPidFolder[] = "/var/run/";

}  // namespace

extern "C" {

char* getcwd(char* buffer, size_t size) {
    if (working_folder.empty()) {
        errno = ENOENT;
        return nullptr;
    }
    if (buffer == nullptr) {
        return strdup(working_folder.c_str());
    }
    return working_folder.size() < size ? strcpy(buffer, working_folder.c_str()) : nullptr;
}

int chdir(const char* path) {
    changed_folder = path;
    return folder_can_be_changed ? 0 : -1;
}

int open(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const int mode = (flags & O_CREAT) != 0 ? va_arg(arguments, int) : 0;  // as a promoted mode_t
    va_end(arguments);
    std::string real_path = path;
    if (real_path.starts_with(kPidFolder)) {
        real_path.replace(0, strlen(kPidFolder), pid_folder);
    }
    return openat(AT_FDCWD, real_path.c_str(), flags, mode);
}

int unlink(const char* path) {
    removed_file = path;
    return -1;
}
}

namespace {

class DaemonizeSelfInForeground : public testing::Test {
  protected:
    DaemonizeSelfInForeground() { pid_folder = folder.Path(""); }

    int Run(int daemon_id = DAEMON_ID_SNMP_SUBAGENT) {
        return DaemonizeSelf(daemon_id, &own_pid, &parent_pid, true);
    }

    const TemporaryFolder folder;
    int own_pid = -7;
    int parent_pid = -7;
};

}  // namespace

TEST_F(DaemonizeSelfInForeground, WritesItsPidFileAndNothingElse) {
    folder.Write("snmpSubagent.pid", "a longer text of a predecessor");
    EXPECT_EQ(Run(), 0);
    EXPECT_EQ(folder.Read("snmpSubagent.pid"), std::to_string(getpid()));
    EXPECT_EQ(own_pid, getpid());
    EXPECT_EQ(parent_pid, getppid());
    EXPECT_EQ(changed_folder, "/mnt/root");
    EXPECT_THAT(SyslogLines(), ElementsAre("1|service_name: snmpSubagent\n"));

    EXPECT_EQ(ShutdownSelf(DAEMON_ID_API_SERVICE_MANAGER), 0);
    EXPECT_EQ(removed_file, "/var/run/apiServiceManager.pid");
}

TEST_F(DaemonizeSelfInForeground, BelowADeploymentFolderItStaysAndWritesNoPidFile) {
    const std::pair<const char*, bool> cases[] = {
        {"/dep", true},
        {"/deploy/x", true},
        {"/", false},
        {"/dxp", false},
    };
    for (const auto& [each_folder, stays] : cases) {
        working_folder = each_folder;
        changed_folder = "";
        own_pid = -7;
        EXPECT_EQ(Run(), 0) << each_folder;
        EXPECT_EQ(own_pid, stays ? -7 : getpid()) << each_folder;
        EXPECT_EQ(changed_folder, stays ? "" : "/mnt/root") << each_folder;
        EXPECT_EQ(folder.Read("snmpSubagent.pid").empty(), stays) << each_folder;
        std::ignore = remove(folder.Path("snmpSubagent.pid").c_str());
    }
}

TEST_F(DaemonizeSelfInForeground, EachFailedStepGivesOneAndItsLine) {
    working_folder = "";
    EXPECT_EQ(Run(), 1);
    working_folder = "/";
    folder_can_be_changed = false;
    EXPECT_EQ(Run(), 1);
    folder_can_be_changed = true;
    pid_folder = folder.Path("missing/");
    EXPECT_EQ(Run(), 1);
    EXPECT_EQ(own_pid, -7);
    const std::string name = "1|service_name: snmpSubagent\n";
    EXPECT_THAT(SyslogLines(),
                ElementsAre(name, "1|couldn't getcwd(): errno: " + std::to_string(ENOENT) + "\n", name, name,
                            "1|Unable to open subagent pid file\n"));
}

TEST_F(DaemonizeSelfInForeground, AnotherCopyIsAwaitedAndThenLeftAlone) {
    EXPECT_TRUE(WaitForOtherCopy(DAEMON_ID_SNMP_SUBAGENT));
    const int other = ::open(folder.Write("snmpSubagent.pid", "4711").c_str(), O_RDWR);
    ASSERT_EQ(flock(other, LOCK_EX), 0);
    int64_t slept_us = 0;
    on_sleep = [&](int64_t duration_us) { slept_us += duration_us; };
    EXPECT_FALSE(WaitForOtherCopy(DAEMON_ID_SNMP_SUBAGENT));
    EXPECT_EQ(slept_us, 5'000'000);
    EXPECT_EQ(Run(), 1);
    EXPECT_EQ(folder.Read("snmpSubagent.pid"), "4711");
    removed_file = "";
    ShutdownSelf(DAEMON_ID_SNMP_SUBAGENT);
    EXPECT_EQ(removed_file, "");
    close(other);
    EXPECT_TRUE(WaitForOtherCopy(DAEMON_ID_SNMP_SUBAGENT));
    EXPECT_EQ(Run(), 0);
}
