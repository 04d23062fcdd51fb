#include "apiMgmt/common/platform/startReport.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <csignal>

namespace {

// Restores the default handlers and the empty mask that a program expects at its start.
void RestoreSignals() {
    struct sigaction action {};
    action.sa_handler = SIG_DFL;
    for (int number = 1; number < NSIG; ++number) {
        sigaction(number, &action, nullptr);  // fails for SIGKILL, SIGSTOP and those of the C library
    }
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

// Closes all descriptors except report_fd, which must be above 2, and opens /dev/null as 0, 1 and 2. A
// program that starts without these three would get their numbers for its own files and overwrite them when
// it daemonises.
bool ReplaceDescriptors(int report_fd) {
    close_range(0, static_cast<unsigned>(report_fd) - 1, 0);
    close_range(static_cast<unsigned>(report_fd) + 1, UINT_MAX, 0);
    return open("/dev/null", O_RDWR) == 0 && dup(0) == 1 && dup(0) == 2;
}

}  // namespace

void ReportAndExit(int report_fd, StartFailure::Step step) {
    const StartFailure failure{step, errno};
    // A lost report would look like a success, so retry.
    while (write(report_fd, &failure, sizeof failure) < 0 && errno == EINTR) {
    }
    _exit(-1);
}

void RunProgram(int pipe_fd, const char* path, char* const argv[], char* const environment[]) {
    const int report_fd = fcntl(pipe_fd, F_DUPFD_CLOEXEC, 3);
    if (report_fd < 0) {
        ReportAndExit(pipe_fd, StartFailure::Step::exec);
    }
    RestoreSignals();
    if (!ReplaceDescriptors(report_fd)) {
        ReportAndExit(report_fd, StartFailure::Step::exec);
    }
    execve(path, argv, environment);
    ReportAndExit(report_fd, StartFailure::Step::exec);
}

StartFailure ReadReport(int report_fd) {
    StartFailure failure;
    ssize_t count = 0;
    do {
        count = read(report_fd, &failure, sizeof failure);
    } while (count < 0 && errno == EINTR);
    return count == static_cast<ssize_t>(sizeof failure) ? failure : StartFailure{};
}
