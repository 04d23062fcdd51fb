#include "tools/checkconf/installationCheck.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <map>

#include "apiMgmt/common/utils/configFile.h"
#include "apiMgmt/common/utils/pathConstants.h"
#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/common/wirelink/accessKey.h"
#include "tools/checkconf/masterAgentCheck.h"
#include "tools/checkconf/settingsCheck.h"

namespace checkconf {

namespace {

constexpr mode_t kOthersMayReadOrWrite = S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;
constexpr int kMaximumLinks = 16;

std::string Below(const std::string& root, const std::string& path) {
    return root == "/" ? path : root + path;
}

/** Follows symlinks as if root were the root directory. */
std::string FollowLinks(const std::string& root, const std::string& path) {
    std::filesystem::path place = path;
    std::error_code error;
    for (int links = 0; links < kMaximumLinks; ++links) {
        const std::filesystem::path target = std::filesystem::read_symlink(Below(root, place), error);
        if (error)
            break;
        place = (place.parent_path() / target).lexically_normal();
    }
    return Below(root, place);
}

/** Returns why the daemon cannot use the file. Only called if it cannot. */
std::string StartFileProblem(const std::string& path) {
    struct stat status {};
    if (lstat(path.c_str(), &status) != 0)
        return "cannot be read (" + std::string(strerror(errno)) + ")";
    if (!S_ISREG(status.st_mode) || (status.st_uid != 0 && status.st_uid != geteuid()))
        return "not a regular file owned by root; symlinks are not followed";
    if (access(path.c_str(), R_OK) != 0)
        return "cannot be read (" + std::string(strerror(errno)) + ")";
    return "no line of the form KEY=VALUE";
}

void CheckStartFile(const std::string& path, Report& report) {
    report.Begin(path);
    const std::map<std::string, std::string> values = ReadConfigFile(path);
    if (values.empty()) {
        report.Error(StartFileProblem(path) + ": the daemon exits immediately with status 1");
        return;
    }
    const auto mode = values.find("isdebugmode");
    if (mode == values.end())
        report.Fact("isdebugmode is not set: the daemon runs in the background");
    else if (ParseBool(mode->second))
        report.Warn(
            "isdebugmode is on: the daemon stays in the foreground, so starting it with systemd or rc.d "
            "fails");
    else
        report.Fact("the daemon runs in the background");
    if (mode != values.end() && !ParseBool(mode->second) && CompareNoCase(mode->second, "false") != 0 &&
        mode->second != "0")
        report.Warn("isdebugmode is '" + mode->second + "', which means off; only true or 1 means on");
}

/** Returns why the daemon does not trust the key file. Only called if it does not. */
std::string KeyFileProblem(const std::string& path) {
    struct stat status {};
    if (lstat(path.c_str(), &status) != 0)
        return strerror(errno);
    if (S_ISLNK(status.st_mode))
        return "it is a symlink, which is never followed";
    if (!S_ISREG(status.st_mode))
        return "it is not a regular file";
    if (status.st_uid != geteuid())
        return "it is owned by another user than the one who runs this program";
    if ((status.st_mode & kOthersMayReadOrWrite) != 0)
        return "it is readable or writable by group or others; run chmod 600";
    if (access(path.c_str(), R_OK) != 0)
        return strerror(errno);
    return "its first line is empty, too long, or contains other characters than letters, digits and . _ ~ + "
           "/ "
           "= -";
}

void CheckKeyFile(const std::string& path, Report& report) {
    report.Begin(path);
    if (const std::string key = ReadAccessKey(path.c_str()); !key.empty())
        report.Fact("the session key has " + std::to_string(key.size()) + " characters");
    else
        report.Error("no session key (" + KeyFileProblem(path) + "): the daemon exits during start-up");
}

void CheckProgram(const std::string& root, const char* path, Report& report) {
    const std::string place = FollowLinks(root, path);
    struct stat status {};
    if (stat(place.c_str(), &status) != 0 || !S_ISREG(status.st_mode) || (status.st_mode & S_IXUSR) == 0)
        report.Error(std::string(path) + " is not a program; the daemon needs it");
}

void CheckDirectory(const std::string& root, const char* path, const char* consequence, Report& report) {
    struct stat status {};
    if (stat(FollowLinks(root, path).c_str(), &status) != 0 || !S_ISDIR(status.st_mode))
        report.Error(std::string(path) + " is not a directory: " + consequence);
}

void CheckProgramsAndDirectories(const std::string& root, Report& report) {
    report.Begin("programs and directories");
    report.Fact("the daemon runs snmpd, snmpget, killall and ps as " + std::string(kSnmpdProgram) + ", " +
                kSnmpgetProgram + ", " + kKillallProgram + " and " + kPsProgram);
    for (const char* program : {kSnmpdProgram, kSnmpgetProgram, kKillallProgram, kPsProgram})
        CheckProgram(root, program, report);
    CheckDirectory(root, kDaemonFolder, "the daemon exits when it goes into the background", report);
    CheckDirectory(root, kPidFileFolder, "the daemon exits when it goes into the background", report);
    const std::filesystem::path log_directory = std::filesystem::path(kSubagentLogFile).parent_path();
    CheckDirectory(root, log_directory.c_str(), "all its log lines would be lost", report);
}

}  // namespace

void CheckInstallation(const std::string& root, Report& report) {
    const std::string directory =
        root == "/" ? root : std::filesystem::absolute(root).lexically_normal().string();
    const auto place = [&](const char* path) { return FollowLinks(directory, path); };
    CheckStartFile(Below(directory, kStartConfigFile), report);
    CheckSettings(place(kSnmpSubagentConfigFile), report);
    CheckKeyFile(Below(directory, kAccessKeyFile), report);
    CheckMasterAgent(place(kSnmpdConfigFile), report);
    CheckProgramsAndDirectories(directory, report);
}

}  // namespace checkconf
