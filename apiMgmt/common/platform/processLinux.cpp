#include <fcntl.h>
#include <pthread.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>

#include "apiMgmt/common/platform/process.h"
#include "apiMgmt/common/platform/startReport.h"

const char* const kKillallOutput = " 2>&1";  // killall -v writes to standard error

namespace {

// The first child exits immediately, so the program's parent becomes the system's reaper.
[[noreturn]] void RunFirstChild(int pipe_fd, const char* path, char* const argv[],
                                char* const environment[]) {
    const pid_t child = _Fork();  // unlike fork, async-signal-safe
    if (child < 0) {
        ReportAndExit(pipe_fd, StartFailure::Step::fork);
    }
    if (child == 0) {
        RunProgram(pipe_fd, path, argv, environment);
    }
    _exit(0);
}

}  // namespace

StartFailure StartDetachedProgram(const char* path, char* const argv[], char* const environment[]) {
    int report[2];
    if (pipe2(report, O_CLOEXEC) != 0) {
        return {StartFailure::Step::fork, errno};
    }
    const pid_t first_child = fork();
    if (first_child == 0) {
        RunFirstChild(report[1], path, argv, environment);
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

void KeepDescriptorsFromPrograms() {
    close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);
}

int MaximumProcessId() {
    constexpr int usual_maximum = 99999;
    int pid_max = 0;
    std::ifstream("/proc/sys/kernel/pid_max") >> pid_max;
    return std::max(usual_maximum, pid_max);
}

void NameThisThread(const char* name) {
    char kept[16];  // the kernel rejects a longer name
    const size_t length = std::min(strlen(name), sizeof kept - 1);
    memcpy(kept, name, length);
    kept[length] = '\0';
    pthread_setname_np(pthread_self(), kept);
}
