#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>

#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/subagentConf.h"
#include "tools/checkconf/checks.h"
#include "tools/checkconf/masterAgentFile.h"
#include "tools/checkconf/settingLines.h"

namespace checkconf {

namespace {

using Directive = MasterAgentFile::Directive;

// Two rests of 15 seconds while the array does not answer.
constexpr int kLongestPass_s = 30;

bool IsMaster(const MasterAgentFile& file) {
    return std::ranges::any_of(file.Find({"master"}), [](const Directive& words) {
        const std::string value = words.size() > 1 ? ToLower(words[1]) : "";
        return value == "agentx" || value == "yes" || value == "all" || value == "on";
    });
}

/** Whether requests of this machine come under the source of a community's line. */
bool IncludesThisMachine(const Directive& words) {
    if (words.size() < 3)
        return true;
    const std::string source = ToLower(words[2]);
    return source == "default" || source == "localhost" || source.starts_with("127.") ||
           source.starts_with("0.0.0.0");
}

void CheckCommunity(const MasterAgentFile& file, Report& report) {
    const std::string& community = self_test_community();
    bool is_named = false;
    for (const Directive& words : file.Find({"rocommunity", "rwcommunity"})) {
        if (words.size() < 2 || words[1] != community)
            continue;
        if (IncludesThisMachine(words)) {
            report.Fact("the community of the self-test is answered");
            return;
        }
        is_named = true;
    }
    for (const Directive& words : file.Find({"com2sec"})) {
        if (words.back() == community) {
            report.Fact(
                "the community of the self-test has a security name; whether it may read is not looked at");
            return;
        }
    }
    if (!file.Find({"includefile", "includedir", "includeallexternals"}).empty())
        report.Warn(
            "the community of the self-test is not in this file; the files that it includes are not looked "
            "at");
    else
        report.Error(std::string("the community of the self-test ") +
                     (is_named ? "is not answered to this machine" : "has no rocommunity line") +
                     ": the daemon ends during its start");
}

void CheckPatience(const MasterAgentFile& file, Report& report) {
    const int timeout_s = file.Number("agentxtimeout").value_or(1);
    if (timeout_s <= kLongestPass_s)
        report.Warn("agentXTimeout is " + std::to_string(timeout_s) +
                    " s: snmpd gives the daemon up while it waits for the array, up to " +
                    std::to_string(kLongestPass_s) + " s; 60 is good");
    if (file.Number("agentxretries").value_or(5) != 0)
        report.Warn("agentXRetries is not 0: snmpd repeats requests while the daemon waits for the array");
}

void CheckSecrecy(const std::string& path, const MasterAgentFile& file, Report& report) {
    struct stat status {};
    if (stat(path.c_str(), &status) == 0 && (status.st_mode & (S_IRGRP | S_IROTH)) != 0 &&
        !file.Find({"createuser"}).empty())
        report.Warn("it holds passphrases, and others than its owner may read it; chmod 600 mends that");
}

}  // namespace

void CheckMasterAgent(const std::string& path, Report& report) {
    report.Begin(path);
    if (access(path.c_str(), R_OK) != 0) {
        report.Error("cannot be read (" + std::string(strerror(errno)) +
                     "): snmpd takes no subagent without it, and the daemon ends during its start");
        return;
    }
    const MasterAgentFile file(ReadWhole(path));
    if (!IsMaster(file))
        report.Error(
            "there is no line 'master agentx': the daemon cannot attach to snmpd and ends during its start");
    if (!file.Find({"agentxsocket"}).empty())
        report.Error("agentXSocket is set: the daemon looks for snmpd at its usual socket only");
    CheckCommunity(file, report);
    CheckPatience(file, report);
    CheckSecrecy(path, file, report);
    const size_t users = file.Find({"rouser", "rwuser"}).size();
    report.Fact(std::to_string(users) + (users == 1 ? " user" : " users") + " of SNMPv3 may use it");
}

}  // namespace checkconf
