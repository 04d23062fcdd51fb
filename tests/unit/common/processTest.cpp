#include "apiMgmt/common/platform/process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <string>

#include "tests/unit/common/threadName.h"
#include "tests/unit/layers/temporaryFolder.h"

extern char** environ;  // FreeBSD's headers do not declare it

namespace {

StartFailure RunShell(const std::string& script, const std::string& argument) {
    std::string name = "sh", option = "-c", text = script, zero = "probe", one = argument;
    char* argv[] = {name.data(), option.data(), text.data(), zero.data(), one.data(), nullptr};
    return StartDetachedProgram("/bin/sh", argv, environ);
}

StartFailure RunWithoutArguments(const char* path) {
    std::string name = "program";
    char* argv[] = {name.data(), nullptr};
    return StartDetachedProgram(path, argv, environ);
}

// The descriptor table of the shell itself; a subshell writes it to the file.
constexpr char kListDescriptors[] = "(find /proc/$$/fd -type l -printf '%f %l\\n' > \"$1\"); exit 0";
constexpr char kThreeNullDevices[] = "0 /dev/null\n1 /dev/null\n2 /dev/null\n";

/** A named pipe. Reading blocks until the detached program has written to it and closed it. */
std::string MakePipe(const TemporaryFolder& folder) {
    EXPECT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);
    return folder.Path("pipe");
}

int FirstFreeDescriptor() {
    const int descriptor = open("/dev/null", O_RDONLY);
    close(descriptor);
    return descriptor;
}

void ExpectNoChildren() {
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

}  // namespace

TEST(StartDetachedProgram, TheProgramGetsNullDevicesAndNothingElse) {
    const TemporaryFolder folder;
    const std::string pipe = MakePipe(folder);
    ASSERT_GT(fcntl(STDERR_FILENO, F_DUPFD, 500), 0);
    const StartFailure failure = RunShell(kListDescriptors, pipe);
    EXPECT_EQ(failure.step, StartFailure::Step::none);
    EXPECT_EQ(folder.Read("pipe"), kThreeNullDevices);
    ExpectNoChildren();
}

TEST(StartDetachedProgram, WorksInACallerWithoutStandardDescriptors) {
    const TemporaryFolder folder;
    const std::string pipe = MakePipe(folder);
    const pid_t child = fork();
    if (child == 0) {
        close(0);
        close(1);
        close(2);
        const bool missing_is_told = RunWithoutArguments("/no/such/program").error_number == ENOENT;
        const bool started = RunShell(kListDescriptors, pipe).step == StartFailure::Step::none;
        _exit(missing_is_told && started ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(folder.Read("pipe"), kThreeNullDevices);
}

TEST(StartDetachedProgram, TheProgramStartsWithDefaultSignals) {
    const TemporaryFolder folder;
    const std::string pipe = MakePipe(folder);
    signal(SIGHUP, SIG_IGN);
    signal(SIGPIPE, SIG_IGN);
    sigset_t blocked;
    sigfillset(&blocked);
    sigprocmask(SIG_BLOCK, &blocked, nullptr);
    RunShell("exec grep -E '^Sig(Blk|Ign)' /proc/self/status > \"$1\"", pipe);
    EXPECT_EQ(folder.Read("pipe"), "SigBlk:\t0000000000000000\nSigIgn:\t0000000000000000\n");
}

TEST(StartDetachedProgram, AFailedExecIsToldAndLeavesNothingBehind) {
    const TemporaryFolder folder;
    const std::string no_program = folder.Write("text", "no program");
    const std::pair<std::string, int> cases[] = {
        {"/no/such/program", ENOENT},
        {no_program, EACCES},
        {folder.Path(""), EACCES},
        {std::string(5000, 'x'), ENAMETOOLONG},
    };
    const int free_before = FirstFreeDescriptor();
    for (const auto& [path, error_number] : cases) {
        const StartFailure failure = RunWithoutArguments(path.c_str());
        EXPECT_EQ(failure.step, StartFailure::Step::exec) << path;
        EXPECT_EQ(failure.error_number, error_number) << path;
    }
    EXPECT_EQ(FirstFreeDescriptor(), free_before);
    ExpectNoChildren();
}

TEST(NameThisThread, CutsALongNameInsteadOfLosingIt) {
    for (const char* given : {"short", "fifteen letters", "HeartBeat Monitor", ""}) {
        NameThisThread(given);
        EXPECT_EQ(ThisThreadsName().substr(0, 15), std::string(given).substr(0, 15));
    }
}
