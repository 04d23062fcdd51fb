#include "tools/checkconf/checks.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "apiMgmt/common/utils/configFile.h"
#include "apiMgmt/common/utils/pathConstants.h"
#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/common/wirelink/accessKey.h"

namespace checkconf {

namespace {

constexpr mode_t kOthersMayReadOrWrite = S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;
constexpr int kGreatestLinks = 16;

std::string Below(const std::string& root, const std::string& path) {
    return root == "/" ? path : root + path;
}

/** Below another root a link means what it will mean when that is the root. */
std::string FollowLinks(const std::string& root, const std::string& path) {
    std::filesystem::path place = path;
    std::error_code error;
    for (int links = 0; links < kGreatestLinks; ++links) {
        const std::filesystem::path target = std::filesystem::read_symlink(Below(root, place), error);
        if (error)
            break;
        place = (place.parent_path() / target).lexically_normal();
    }
    return Below(root, place);
}

/** Why the daemon takes no setting from the file; only called when it does not. */
std::string ReasonAgainstStart(const std::string& path) {
    struct stat status {};
    if (lstat(path.c_str(), &status) != 0)
        return "cannot be read (" + std::string(strerror(errno)) + ")";
    if (!S_ISREG(status.st_mode) || (status.st_uid != 0 && status.st_uid != geteuid()))
        return "not a regular file of root, and links are not followed";
    if (access(path.c_str(), R_OK) != 0)
        return "cannot be read (" + std::string(strerror(errno)) + ")";
    return "not one line of the form key=value";
}

void CheckStart(const std::string& path, Report& report) {
    report.Begin(path);
    const std::map<std::string, std::string> values = ReadConfigFile(path);
    if (values.empty()) {
        report.Error(ReasonAgainstStart(path) + ": the daemon ends at once, with status 1");
        return;
    }
    const auto mode = values.find("isdebugmode");
    if (mode == values.end())
        report.Fact("isdebugmode is not set: the daemon goes into the background");
    else if (ParseBool(mode->second))
        report.Warn(
            "isdebugmode is on: the daemon stays in the foreground, and a start by systemd or rc.d fails");
    else
        report.Fact("the daemon goes into the background");
    if (mode != values.end() && !ParseBool(mode->second) && CompareNoCase(mode->second, "false") != 0 &&
        mode->second != "0")
        report.Warn("isdebugmode is '" + mode->second + "', which is off: true or 1 switches it on");
}

/** Why the daemon does not trust a key file; only called when it does not. */
std::string ReasonAgainstKey(const std::string& path) {
    struct stat status {};
    if (lstat(path.c_str(), &status) != 0)
        return strerror(errno);
    if (S_ISLNK(status.st_mode))
        return "it is a link, which is never followed";
    if (!S_ISREG(status.st_mode))
        return "it is no regular file";
    if (status.st_uid != geteuid())
        return "it belongs to another user than the one that runs this";
    if ((status.st_mode & kOthersMayReadOrWrite) != 0)
        return "group or others may read or write it; chmod 600 mends that";
    if (access(path.c_str(), R_OK) != 0)
        return strerror(errno);
    return "its first line is empty, too long, or holds something else than letters, digits and . _ ~ + / = "
           "-";
}

void CheckKey(const std::string& path, Report& report) {
    report.Begin(path);
    if (const std::string key = ReadAccessKey(path.c_str()); !key.empty())
        report.Fact("the session key has " + std::to_string(key.size()) + " characters");
    else
        report.Error("no session key (" + ReasonAgainstKey(path) + "): the daemon ends during its start");
}

void CheckProgram(const std::string& root, const char* path, Report& report) {
    const std::string place = FollowLinks(root, path);
    struct stat status {};
    if (stat(place.c_str(), &status) != 0 || !S_ISREG(status.st_mode) || (status.st_mode & S_IXUSR) == 0)
        report.Error(std::string(path) + " is no program: the daemon cannot do without it");
}

void CheckFolder(const std::string& root, const char* path, const char* consequence, Report& report) {
    struct stat status {};
    if (stat(FollowLinks(root, path).c_str(), &status) != 0 || !S_ISDIR(status.st_mode))
        report.Error(std::string(path) + " is no folder: " + consequence);
}

void CheckMachine(const std::string& root, Report& report) {
    report.Begin("programs and folders");
    report.Fact("snmpd, snmpget, killall and ps are looked for at " + std::string(kSnmpdProgram) + ", " +
                kSnmpgetProgram + ", " + kKillallProgram + " and " + kPsProgram);
    for (const char* program : {kSnmpdProgram, kSnmpgetProgram, kKillallProgram, kPsProgram})
        CheckProgram(root, program, report);
    CheckFolder(root, kDaemonFolder, "the daemon ends when it goes into the background", report);
    CheckFolder(root, kPidFileFolder, "the daemon ends when it goes into the background", report);
    const std::filesystem::path log_folder = std::filesystem::path(kSubagentLogFile).parent_path();
    CheckFolder(root, log_folder.c_str(), "all its log lines would be lost", report);
}

}  // namespace

void CheckAll(const std::string& root, Report& report) {
    const std::string folder =
        root == "/" ? root : std::filesystem::absolute(root).lexically_normal().string();
    const auto place = [&](const char* path) { return FollowLinks(folder, path); };
    CheckStart(Below(folder, kStartConfigFile), report);
    CheckSettings(place(kSnmpSubagentConfigFile), report);
    CheckKey(Below(folder, kAccessKeyFile), report);
    CheckMasterAgent(place(kSnmpdConfigFile), report);
    CheckMachine(folder, report);
}

}  // namespace checkconf
