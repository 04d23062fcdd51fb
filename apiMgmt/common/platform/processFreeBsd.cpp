#include <fcntl.h>
#include <pthread.h>
#include <pthread_np.h>
#include <sys/select.h>
#include <unistd.h>

#include <cerrno>

#include "apiMgmt/common/platform/process.h"
#include "apiMgmt/common/platform/startReport.h"

const char* const kKillallOutput = "";  // killall -v writes to standard output

StartFailure StartDetachedProgram(const char* path, char* const argv[], char* const environment[]) {
    int report[2];
    if (pipe2(report, O_CLOEXEC) != 0) {
        return {StartFailure::Step::fork, errno};
    }
    // RFNOWAIT: the child belongs to init from the start and leaves no zombie. RFFDG, not RFCFDG: with an
    // empty descriptor table the child could not report a failed exec.
    const pid_t child = rfork(RFPROC | RFNOWAIT | RFFDG);
    if (child == 0) {
        RunProgram(report[1], path, argv, environment);
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

// Releases before 14 cannot mark a range. All descriptors that matter are below FD_SETSIZE.
void KeepDescriptorsFromPrograms() {
    for (int descriptor = STDERR_FILENO + 1; descriptor < FD_SETSIZE; ++descriptor)
        fcntl(descriptor, F_SETFD, FD_CLOEXEC);
}

int MaximumProcessId() {
    return 99999;
}

void NameThisThread(const char* name) {
    pthread_set_name_np(pthread_self(), name);
}
