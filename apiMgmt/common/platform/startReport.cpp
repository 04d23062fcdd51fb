#include "apiMgmt/common/platform/startReport.h"

#include <unistd.h>

#include <cerrno>
#include <csignal>

void ReportAndExit(int report_fd, StartFailure::Step step) {
    const StartFailure failure{step, errno};
    // A lost report would look like a success; there is nobody else to tell.
    while (write(report_fd, &failure, sizeof failure) < 0 && errno == EINTR) {
    }
    _exit(-1);
}

void RestoreSignals() {
    struct sigaction action {};
    action.sa_handler = SIG_DFL;
    for (int number = 1; number < NSIG; ++number) {
        sigaction(number, &action, nullptr);  // fails for SIGKILL, SIGSTOP and the C library's own
    }
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

StartFailure ReadReport(int report_fd) {
    StartFailure failure;
    ssize_t count = 0;
    do {
        count = read(report_fd, &failure, sizeof failure);
    } while (count < 0 && errno == EINTR);
    return count == static_cast<ssize_t>(sizeof failure) ? failure : StartFailure{};
}
