#include "tools/checkconf/masterAgentCheck.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/common/utils/textFile.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/settings/subagentConf.h"
#include "tools/checkconf/masterAgentDirectives.h"
#include "tools/checkconf/masterAgentFile.h"
#include "tools/checkconf/selfTestAccess.h"
#include "tools/commandLine/nearestName.h"

namespace checkconf {

namespace {

using Directive = MasterAgentFile::Directive;

// Requests wait while the daemon resolves a name in trapDest: this long if three name servers do not respond.
constexpr int kMaximumResolution_s = 12;

constexpr const char* kAgentXSocket = "/var/agentx/master";

// Number of strings of maximum length that fit in a datagram.
constexpr int kMaximumResponses = 20;
constexpr int kDefaultResponses = 100;

constexpr size_t kMinimumPassphrase = 8;
constexpr size_t kMaximumMisspelling = 2;

// snmpd uses the last such line and compares all of its rest, including a comment.
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

/** Reports an error, or only a warning if an included file may correct it. */
void ReportUnlessIncluded(const MasterAgentFile& file, const std::string& problem, Report& report) {
    if (HasIncludes(file))
        report.Warn(problem + "; included files are not checked");
    else
        report.Error(problem + ": the daemon exits during start-up");
}

void CheckCommunity(const MasterAgentFile& file, Report& report) {
    const std::string community = "the self-test community ";
    switch (FindAccess(file, self_test_community())) {
        case Access::kGranted:
            report.Fact(community + "has access");
            break;
        case Access::kUnknown:
            report.Fact(community + "exists; its access to " + SelfTestOidText() + " is not checked");
            break;
        case Access::kHidden:
            ReportUnlessIncluded(
                file, community + "cannot read " + SelfTestOidText() + ", which the daemon needs", report);
            break;
        case Access::kElsewhere:
            ReportUnlessIncluded(file, community + "has no access from this machine", report);
            break;
        case Access::kNone:
            ReportUnlessIncluded(file, "no rocommunity line for the self-test community", report);
            break;
    }
}

/** Without an agentAddress line, snmpd listens at UDP port 161 of all interfaces. */
void CheckAddresses(const MasterAgentFile& file, Report& report) {
    std::vector<Verdict> verdicts;
    for (const Directive& words : file.Find({"agentaddress"})) {
        if (words.size() > 2) {
            report.Error(
                "agentAddress contains a space: snmpd exits, and so does the daemon during start-up");
            return;
        }
        std::vector<std::string> addresses;
        if (words.size() == 2)
            SplitChar(words[1], ',', addresses);
        std::ranges::transform(addresses, std::back_inserter(verdicts), IncludesSelfTestAddress);
    }
    if (verdicts.empty() || std::ranges::count(verdicts, Verdict::kYes) > 0)
        return;
    if (std::ranges::count(verdicts, Verdict::kUnknown) > 0)
        report.Fact(
            "agentAddress contains a host name; whether the self-test reaches snmpd there is not checked");
    else
        ReportUnlessIncluded(
            file,
            "no agentAddress includes UDP port 161 at 127.0.0.1, where the self-test sends its requests",
            report);
}

void CheckTimeouts(const MasterAgentFile& file, Report& report) {
    const int timeout_s = file.Number("agentxtimeout").value_or(1);
    if (timeout_s <= kMaximumResolution_s)
        report.Warn("agentXTimeout is " + std::to_string(timeout_s) +
                    " s: snmpd disconnects the daemon if no name server responds for " +
                    std::to_string(kMaximumResolution_s) + " s while the daemon resolves trapDest; set 60");
    if (file.Number("agentxretries").value_or(5) != 0)
        report.Warn("agentXRetries is not 0: snmpd repeats requests that the daemon delays; set 0");
}

void CheckResponses(const MasterAgentFile& file, Report& report) {
    const int responses = file.Number("maxgetbulkresponses").value_or(kDefaultResponses);
    if (responses > kMaximumResponses || responses == 0)
        report.Warn(
            "maxGetbulkResponses is not between 1 and 20: snmpd sends nothing if a response does not fit in "
            "a "
            "datagram; set 20");
}

/** Checks lines `createUser [-e ENGINE] NAME PROTOCOL PASSPHRASE [PROTOCOL [PASSPHRASE]]`. */
void CheckPassphrases(const MasterAgentFile& file, Report& report) {
    for (Directive words : file.Find({"createuser"})) {
        if (words.size() > 2 && words[1] == "-e")
            words.erase(words.begin() + 1, words.begin() + 3);
        for (size_t place = 3; place < words.size(); place += 2) {
            if (words[place] == "-m" || words[place] == "-l")
                break;  // a key
            if (words[place].size() < kMinimumPassphrase) {
                report.Warn("createUser " + words[1] +
                            ": a passphrase has fewer than 8 characters; snmpd does not create the user");
                break;
            }
        }
    }
}

/** Receivers of notifications: the address of trap2sink and others is the second word, that of trapsess the
 * last. */
void CheckReceivers(const MasterAgentFile& file, Report& report) {
    std::set<std::string> receivers;
    for (const Directive& words : file.Find({"trapsink", "trap2sink", "informsink", "trapsess"})) {
        if (words.size() < 2)
            continue;
        const bool is_session = words[0] == "trapsess";
        const std::string& receiver = is_session ? words.back() : words[1];
        report.Fact("snmpd sends notifications to " + receiver + " (" + words[0] + ")");
        if (!receivers.insert(receiver).second)
            report.Warn("receiver " + receiver + " occurs twice: it gets every notification twice");
        const auto has = [&](const char* option) { return std::ranges::find(words, option) != words.end(); };
        const bool is_v3 = has("-v3") || (has("-v") && has("3"));
        if (is_session && is_v3 && !has("-e"))
            report.Warn(
                "trapsess " + receiver +
                " without -e ENGINE-ID: while the receiver does not respond, neither snmpd nor the daemon "
                "starts");
    }
}

/** snmpd only logs unknown directives, which may also belong to modules that it does not have. */
void CheckSpelling(const MasterAgentFile& file, Report& report) {
    std::vector<std::string> known;
    SplitChar(kMasterAgentDirectives, ' ', known);
    for (const Directive& words : file.directives()) {
        const auto nearest = commandline::NearestName(words[0], known, kMaximumMisspelling);
        if (nearest && CompareNoCase(*nearest, words[0]) != 0)
            report.Warn("unknown directive '" + words[0] + "'; do you mean " + *nearest + "?");
    }
}

void CheckPermissions(const std::string& path, const MasterAgentFile& file, Report& report) {
    struct stat status {};
    if (stat(path.c_str(), &status) == 0 && (status.st_mode & (S_IRGRP | S_IROTH)) != 0 &&
        !file.Find({"createuser"}).empty())
        report.Warn("contains passphrases and is readable by group or others; run chmod 600");
}

}  // namespace

void CheckMasterAgent(const std::string& path, Report& report) {
    report.Begin(path);
    const std::optional<std::string> text = ReadTextFile(path);
    if (!text) {
        report.Error("cannot be read (" + std::string(strerror(errno)) +
                     "): snmpd accepts no subagent without it, and the daemon exits during start-up");
        return;
    }
    const MasterAgentFile file(*text);
    if (!IsMaster(file))
        report.Error(
            "the last master line is missing or not exactly 'master agentx': the daemon cannot attach and "
            "exits "
            "during start-up");
    if (MovesSocket(file))
        report.Error("agentXSocket is set: the daemon connects only to the default socket");
    CheckCommunity(file, report);
    CheckAddresses(file, report);
    CheckTimeouts(file, report);
    CheckResponses(file, report);
    CheckPassphrases(file, report);
    CheckReceivers(file, report);
    CheckSpelling(file, report);
    CheckPermissions(path, file, report);
    const size_t users = file.Find({"rouser", "rwuser"}).size();
    report.Fact(std::to_string(users) + (users == 1 ? " SNMPv3 user has" : " SNMPv3 users have") + " access");
}

}  // namespace checkconf
