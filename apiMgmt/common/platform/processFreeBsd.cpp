#include <fcntl.h>
#include <pthread.h>
#include <pthread_np.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <climits>

#include "apiMgmt/common/platform/process.h"

const char* const kKillallOutput = "";  // killall -v reports on standard output here

namespace {

// Between rfork and exec only async-signal-safe calls are allowed: another thread may hold any lock.

[[noreturn]] void ChildReportAndExit(int report_fd) {
    const StartFailure failure{StartFailure::Step::exec, errno};
    // A lost report would look like a success; there is nobody else to tell.
    while (write(report_fd, &failure, sizeof failure) < 0 && errno == EINTR) {
    }
    _exit(-1);
}

void ChildRestoreSignals() {
    struct sigaction action {};
    action.sa_handler = SIG_DFL;
    for (int number = 1; number < NSIG; ++number) {
        sigaction(number, &action, nullptr);  // fails for SIGKILL and SIGSTOP
    }
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

// The program starts with no descriptor at all: report_fd is the only one left, and exec closes it.
[[noreturn]] void RunProgram(int report_fd, const char* path, char* const argv[]) {
    ChildRestoreSignals();
    if (report_fd > 0) {
        close_range(0, static_cast<unsigned>(report_fd) - 1, 0);
    }
    close_range(static_cast<unsigned>(report_fd) + 1, UINT_MAX, 0);
    execv(path, argv);
    ChildReportAndExit(report_fd);
}

// Blocks until the writing end is closed by exec, by the child's end, or after a report.
StartFailure ReadReport(int report_fd) {
    StartFailure failure;
    ssize_t count = 0;
    do {
        count = read(report_fd, &failure, sizeof failure);
    } while (count < 0 && errno == EINTR);
    return count == static_cast<ssize_t>(sizeof failure) ? failure : StartFailure{};
}

}  // namespace

StartFailure StartDetachedProgram(const char* path, char* const argv[]) {
    int report[2];
    if (pipe2(report, O_CLOEXEC) != 0) {
        return {StartFailure::Step::fork, errno};
    }
    // RFNOWAIT: the child belongs to init from the start and leaves no zombie. A copied table that the
    // child empties, and not RFCFDG, because an empty one has no way to report a failed exec.
    const pid_t child = rfork(RFPROC | RFNOWAIT | RFFDG);
    if (child == 0) {
        RunProgram(report[1], path, argv);
    }
    const int fork_error = errno;
    close(report[1]);
    if (child < 0) {
        close(report[0]);
        return {StartFailure::Step::fork, fork_error};
    }
    const StartFailure failure = ReadReport(report[0]);
    close(report[0]);
    return failure;
}

int GreatestProcessNumber() {
    return 99999;
}

void NameThisThread(const char* name) {
    pthread_set_name_np(pthread_self(), name);
}
