#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/common/utils/textFile.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/settings/subagentConf.h"
#include "tools/checkconf/checks.h"
#include "tools/checkconf/masterAgentAccess.h"
#include "tools/checkconf/masterAgentAddress.h"
#include "tools/checkconf/masterAgentFile.h"

namespace checkconf {

namespace {

using Directive = MasterAgentFile::Directive;

// A name in trapDest is resolved while requests wait: so long with three name servers that do not answer.
constexpr int kLongestSilence_s = 12;

constexpr const char* kAgentXSocket = "/var/agentx/master";

// snmpd compares all that stands behind the word, a comment included, and the last line counts.
bool IsMaster(const MasterAgentFile& file) {
    const std::string text = file.LastText("master");
    return text == "agentx" || text == "yes" || text == "all" || text == "on" || ParseInt(text) == 1;
}

bool MovesSocket(const MasterAgentFile& file) {
    const std::string text = file.LastText("agentxsocket");
    return !text.empty() && text != kAgentXSocket;
}

bool HasIncludes(const MasterAgentFile& file) {
    return !file.Find({"includefile", "includedir", "includeallexternals"}).empty();
}

/** An error that a line of an included file may mend. */
void ErrUnlessIncluded(const MasterAgentFile& file, const std::string& fault, Report& report) {
    if (HasIncludes(file))
        report.Warn(fault + "; the files that this one includes are not looked at");
    else
        report.Error(fault + ": the daemon ends during its start");
}

void CheckCommunity(const MasterAgentFile& file, Report& report) {
    const std::string community = "the community of the self-test ";
    switch (JudgeAccess(file, self_test_community())) {
        case Access::kAnswered:
            report.Fact(community + "is answered");
            break;
        case Access::kNotLookedAt:
            report.Fact(community + "is known; whether it may read " + SelfTestOidText() +
                        " is not looked at");
            break;
        case Access::kHidden:
            ErrUnlessIncluded(file,
                              community + "may not read " + SelfTestOidText() + ", which the daemon asks for",
                              report);
            break;
        case Access::kElsewhere:
            ErrUnlessIncluded(file, community + "is not answered to this machine", report);
            break;
        case Access::kNone:
            ErrUnlessIncluded(file, community + "has no rocommunity line", report);
            break;
    }
}

/** Where snmpd listens; without a line at UDP port 161 of all interfaces. */
void CheckAddresses(const MasterAgentFile& file, Report& report) {
    std::vector<Judgement> judgements;
    for (const Directive& words : file.Find({"agentaddress"})) {
        if (words.size() > 2) {
            report.Error(
                "agentAddress has a blank among its addresses: snmpd ends, and so does the daemon during its "
                "start");
            return;
        }
        std::vector<std::string> addresses;
        if (words.size() == 2)
            SplitChar(words[1], ',', addresses);
        std::ranges::transform(addresses, std::back_inserter(judgements), ServesThisMachine);
    }
    if (judgements.empty() || std::ranges::count(judgements, Judgement::kYes) > 0)
        return;
    if (std::ranges::count(judgements, Judgement::kNotLookedAt) > 0)
        report.Fact("agentAddress names a host; whether the self-test finds snmpd there is not looked at");
    else
        ErrUnlessIncluded(file, "no agentAddress is UDP port 161 at 127.0.0.1, where the daemon asks",
                          report);
}

void CheckPatience(const MasterAgentFile& file, Report& report) {
    const int timeout_s = file.Number("agentxtimeout").value_or(1);
    if (timeout_s <= kLongestSilence_s)
        report.Warn("agentXTimeout is " + std::to_string(timeout_s) +
                    " s: snmpd drops the daemon if no name server answers for " +
                    std::to_string(kLongestSilence_s) + " s while it resolves trapDest; set 60");
    if (file.Number("agentxretries").value_or(5) != 0)
        report.Warn("agentXRetries is not 0: snmpd repeats requests that wait for the daemon's pace; set 0");
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
    const std::optional<std::string> text = ReadTextFile(path);
    if (!text) {
        report.Error("cannot be read (" + std::string(strerror(errno)) +
                     "): snmpd takes no subagent without it, and the daemon ends during its start");
        return;
    }
    const MasterAgentFile file(*text);
    if (!IsMaster(file))
        report.Error(
            "there is no line 'master agentx', or more stands behind it, or another follows: the daemon "
            "cannot "
            "attach, and ends during its start");
    if (MovesSocket(file))
        report.Error("agentXSocket is set: the daemon looks for snmpd at its usual socket only");
    CheckCommunity(file, report);
    CheckAddresses(file, report);
    CheckPatience(file, report);
    CheckSecrecy(path, file, report);
    const size_t users = file.Find({"rouser", "rwuser"}).size();
    report.Fact(std::to_string(users) + (users == 1 ? " user" : " users") + " of SNMPv3 may use it");
}

}  // namespace checkconf
