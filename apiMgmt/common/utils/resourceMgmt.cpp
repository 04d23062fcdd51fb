#include "apiMgmt/common/utils/resourceMgmt.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <syslog.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "apiMgmt/common/platform/clock.h"
#include "apiMgmt/common/utils/pathConstants.h"

std::string RESOURCEmgmt::service_name;
int RESOURCEmgmt::my_pid = 0;

namespace {

constexpr int64_t kOtherCopyTimeout_us = 5 * kSecondUs;
constexpr int64_t kOtherCopyPoll_us = 100 * kMillisecondUs;

void SetServiceName(int daemon_id) {
    switch (daemon_id) {
        case DAEMON_ID_API_SERVICE_MANAGER:
            RESOURCEmgmt::service_name = "apiServiceManager";
            break;
        case DAEMON_ID_SNMP_SUBAGENT:
            RESOURCEmgmt::service_name = "snmpSubagent";
            break;
        default:
            syslog(LOG_ALERT, "invalid daemonID: %d\n", daemon_id);
            break;
    }
}

class PidFilePath {
  public:
    PidFilePath() {
        snprintf(text_, sizeof text_, "%s/%s.pid", kPidFileFolder, RESOURCEmgmt::service_name.c_str());
    }
    const char* c_str() const { return text_; }

  private:
    char text_[1024];
};

// Continues in a child process; the parent exits with status 0. Returns false if fork failed.
bool ContinueInChild() {
    const pid_t child = fork();
    if (child > 0) {
        _exit(0);  // exit would destroy objects that the child uses
    }
    return child == 0;
}

// The daemon becomes a child of systemd when its parent exits. If systemd reads the pid file before that, it
// does not wait for the daemon to exit when it stops the service, but kills it immediately.
void WaitUntilAdopted(pid_t parent) {
    for (int64_t left_us = kSecondUs; left_us > 0 && getppid() == parent; left_us -= kMillisecondUs) {
        ClockSleepMicroseconds(kMillisecondUs);
    }
}

void CloseAllDescriptors(const rlimit& open_files) {
    const rlim_t count = open_files.rlim_max == RLIM_INFINITY ? 1024 : open_files.rlim_max;
    const rlim_t maximum = std::min<rlim_t>(count, INT_MAX);  // descriptors are ints
    if (close_range(0, static_cast<unsigned>(maximum), 0) == 0) {
        return;
    }
    for (rlim_t descriptor = 0; descriptor <= maximum; ++descriptor) {  // for a kernel without close_range
        close(static_cast<int>(descriptor));
    }
}

// All descriptors must have been closed, so that these get the numbers 0, 1 and 2.
int OpenNullAsStandardDescriptors() {
    const int input = open("/dev/null", O_RDWR);
    const int output = dup(input);
    const int errors = dup(input);
    if (input == STDIN_FILENO && output == STDOUT_FILENO && errors == STDERR_FILENO) {
        return 0;
    }
    for (const int descriptor : {input, output, errors}) {
        close(descriptor);
    }
    return 1;
}

int LeaveTerminal() {
    umask(0);
    rlimit open_files{};
    if (getrlimit(RLIMIT_NOFILE, &open_files) != 0) {
        return 1;
    }
    fflush(nullptr);  // buffered output would be lost with the descriptors
    if (!ContinueInChild()) {
        return 1;
    }
    setsid();
    // Must be done before the second fork: the exit of the session leader sends SIGHUP to the session.
    if (signal(SIGHUP, SIG_IGN) == SIG_ERR) {
        return 1;
    }
    // A process that is not a session leader can never acquire a terminal again.
    const pid_t leader = getpid();
    if (!ContinueInChild()) {
        return 1;
    }
    WaitUntilAdopted(leader);
    CloseAllDescriptors(open_files);
    return OpenNullAsStandardDescriptors();
}

// A running copy holds a lock on its pid file, which is released however it exits. Nobody else may open the
// file, because whoever has it open could hold the lock.
constexpr mode_t kPidFileMode = S_IRUSR | S_IWUSR;
int held_pid_file = -1;

bool IsHeldByOther(const char* path) {
    const int file = open(path, O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        return false;
    }
    const bool is_held = flock(file, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    close(file);
    return is_held;
}

bool IsRemoved(int file) {
    struct stat status {};
    return fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink == 0;
}

// Returns the locked pid file, or -1.
int OpenAndHold(const char* path) {
    for (;;) {
        const int file = open(path, O_WRONLY | O_CREAT | O_CLOEXEC, kPidFileMode);
        if (file < 0) {
            return -1;
        }
        if (flock(file, LOCK_EX | LOCK_NB) != 0) {
            close(file);
            return -1;
        }
        if (!IsRemoved(file)) {
            return file;
        }
        close(file);  // its last owner has just removed it
    }
}

bool IsDeploymentFolder(const char* path) {
    return path[0] != '\0' && strncmp(path + 1, "dep", 3) == 0;
}

}  // namespace

int DaemonizeSelf(int daemon_id, int* own_pid, int* parent_pid, bool stay_in_foreground) {
    SetServiceName(daemon_id);
    *parent_pid = getppid();
    if (!stay_in_foreground && LeaveTerminal() != 0) {
        return 1;
    }
    RESOURCEmgmt::my_pid = getpid();

    openlog("DaemonizeSelf", LOG_CONS | LOG_PERROR, LOG_DAEMON);
    syslog(LOG_ALERT, "service_name: %s\n", RESOURCEmgmt::service_name.c_str());
    const std::unique_ptr<char, decltype(&free)> folder(getcwd(nullptr, 0), &free);
    if (folder == nullptr) {
        syslog(LOG_ALERT, "couldn't getcwd(): errno: %d\n", errno);
        return 1;
    }
    if (IsDeploymentFolder(folder.get())) {
        closelog();
        return 0;
    }
    if (chdir(kDaemonFolder) != 0 || WritePidFile() != 0) {
        return 1;
    }
    *own_pid = RESOURCEmgmt::my_pid;
    closelog();
    return 0;
}

bool WaitForOtherCopy(int daemon_id) {
    SetServiceName(daemon_id);
    for (int64_t waited_us = 0; IsHeldByOther(PidFilePath().c_str()); waited_us += kOtherCopyPoll_us) {
        if (waited_us >= kOtherCopyTimeout_us) {
            return false;
        }
        ClockSleepMicroseconds(kOtherCopyPoll_us);
    }
    return true;
}

int WritePidFile() {
    if (held_pid_file >= 0) {  // from an earlier call
        close(held_pid_file);
        held_pid_file = -1;
    }
    const int file = OpenAndHold(PidFilePath().c_str());
    if (file < 0) {
        syslog(LOG_ALERT, "Unable to open subagent pid file\n");
        return 1;
    }
    struct stat status {};
    if (fstat(file, &status) != 0) {
        syslog(LOG_ALERT, "Unable to stat subagent pid file\n");
        close(file);
        return 1;
    }
    if (ftruncate(file, 0) != 0 || dprintf(file, "%d", RESOURCEmgmt::my_pid) <= 0) {
        syslog(LOG_ALERT, "Unable to write subagent pid file\n");
        close(file);
        return 1;
    }
    held_pid_file = file;  // until the process exits
    return 0;
}

int ShutdownSelf(int daemon_id) {
    SetServiceName(daemon_id);
    if (held_pid_file >= 0 || !IsHeldByOther(PidFilePath().c_str())) {
        unlink(PidFilePath().c_str());
    }
    return 0;
}
