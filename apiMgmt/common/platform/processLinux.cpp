#include <fcntl.h>
#include <pthread.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <fstream>

#include "apiMgmt/common/platform/process.h"
#include "apiMgmt/common/platform/startReport.h"

const char* const kKillallOutput = " 2>&1";  // killall -v reports on standard error here

namespace {

// Leaves /dev/null as 0, 1 and 2, and report_fd (above 2), which exec closes. A program that starts
// without the three would get them for its own files and then overwrite them when it detaches.
bool ChildReplaceDescriptors(int report_fd) {
    close_range(0, static_cast<unsigned>(report_fd) - 1, 0);
    close_range(static_cast<unsigned>(report_fd) + 1, UINT_MAX, 0);
    return open("/dev/null", O_RDWR) == 0 && dup(0) == 1 && dup(0) == 2;
}

[[noreturn]] void RunProgram(int pipe_fd, const char* path, char* const argv[]) {
    const int report_fd = fcntl(pipe_fd, F_DUPFD_CLOEXEC, 3);
    if (report_fd < 0) {
        ReportAndExit(pipe_fd, StartFailure::Step::exec);
    }
    RestoreSignals();
    if (!ChildReplaceDescriptors(report_fd)) {
        ReportAndExit(report_fd, StartFailure::Step::exec);
    }
    execv(path, argv);
    ReportAndExit(report_fd, StartFailure::Step::exec);
}

// The first child only hands the program over to the system's reaper.
[[noreturn]] void RunFirstChild(int pipe_fd, const char* path, char* const argv[]) {
    const pid_t child = _Fork();  // unlike fork, async-signal-safe
    if (child < 0) {
        ReportAndExit(pipe_fd, StartFailure::Step::fork);
    }
    if (child == 0) {
        RunProgram(pipe_fd, path, argv);
    }
    _exit(0);
}

}  // namespace

StartFailure StartDetachedProgram(const char* path, char* const argv[]) {
    int report[2];
    if (pipe2(report, O_CLOEXEC) != 0) {
        return {StartFailure::Step::fork, errno};
    }
    const pid_t first_child = fork();
    if (first_child == 0) {
        RunFirstChild(report[1], path, argv);
    }
    const int fork_error = errno;
    close(report[1]);
    if (first_child < 0) {
        close(report[0]);
        return {StartFailure::Step::fork, fork_error};
    }
    while (waitpid(first_child, nullptr, 0) < 0 && errno == EINTR) {
    }
    const StartFailure failure = ReadReport(report[0]);
    close(report[0]);
    return failure;
}

int GreatestProcessNumber() {
    constexpr int usual_greatest = 99999;
    int pid_max = 0;
    std::ifstream("/proc/sys/kernel/pid_max") >> pid_max;
    return std::max(usual_greatest, pid_max);
}

void NameThisThread(const char* name) {
    char kept[16];  // the kernel refuses a longer name instead of cutting it
    const size_t length = std::min(strlen(name), sizeof kept - 1);
    memcpy(kept, name, length);
    kept[length] = '\0';
    pthread_setname_np(pthread_self(), kept);
}
