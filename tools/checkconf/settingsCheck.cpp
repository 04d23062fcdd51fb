#include <sys/stat.h>

#include <string>

#include "apiMgmt/snmpSubagent/snmpSubagentMain/settings/subagentConf.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/sendTrap.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"
#include "tools/checkconf/checks.h"
#include "tools/checkconf/daemonLines.h"
#include "tools/checkconf/settingLines.h"

namespace checkconf {

namespace {

constexpr int kGreatestPort = 65535;

const char* VersionName() {
    switch (conf_trapVer) {
        case 1:
            return "version 1 traps";
        case 2:
            return "version 2c traps";
        case 3:
            return "version 2c informs";
        default:
            return nullptr;
    }
}

/** What the daemon would log of them, it logs here. */
void WarnOfDaemonLines(Report& report) {
    for (const std::string& line : TakeDaemonLines())
        report.Warn("the daemon says: " + line);
}

void TellOfNotifications(Report& report) {
    if (!conf_trapsEnabled) {
        report.Fact("notifications are off");
        return;
    }
    std::string peer;
    if (conf_trapDest.empty()) {
        report.Warn("notifications are on, and trapDest is empty: none leaves");
    } else if (build_trap_peer_name(&peer) != 0) {
        WarnOfDaemonLines(report);
        report.Warn("notifications are on, and trapDest is no address that can be sent to: none leaves");
    }
    if (VersionName() == nullptr)
        report.Warn("notifications are on, and trapVer is " + std::to_string(conf_trapVer) +
                    ": 1 (trap), 2 (version 2c trap) or 3 (inform); none leaves");
    if (conf_trapPort < 1 || conf_trapPort > kGreatestPort)
        report.Warn("notifications are on, and trapPort is " + std::to_string(conf_trapPort) +
                    ": none arrives");
    if (!peer.empty() && VersionName() != nullptr)
        report.Fact(std::string(VersionName()) + " go to " + peer);
}

void WarnOfOpenCommunities(const std::string& path, Report& report) {
    struct stat status {};
    if (stat(path.c_str(), &status) == 0 && (status.st_mode & (S_IRWXG | S_IRWXO)) != 0)
        report.Warn("readable or writable by group or others; run chmod 600");
    if (conf_rocommunity.empty() && !conf_rwcommunity.empty())
        report.Warn(
            "rocommunity is empty, so the self-test uses the write community, which the process list shows; "
            "set rocommunity");
}

void TellOfTheRest(Report& report) {
    report.Fact("the self-test asks snmpd with a community of " +
                std::to_string(self_test_community().size()) + " characters");
    report.Fact(
        "the array is instance " + std::to_string(conf_controllerIdThis) + ", this controller is " +
        (conf_controllerIndexThis == 0 ? "not known" : "row " + std::to_string(conf_controllerIndexThis)));
    report.Fact(std::string("debug lines are ") + (verbose ? "on" : "off") +
                (sendTestTrap ? ", one test notification is sent after the start" : ""));
}

}  // namespace

void CheckSettings(const std::string& path, Report& report) {
    report.Begin(path);
    const int result = read_conf_file(path.c_str());
    WarnOfDaemonLines(report);
    if (result == 0) {
        WarnOfOpenCommunities(path, report);
        CheckSettingLines(path, report);
        TellOfNotifications(report);
    } else {
        report.Warn("the daemon goes on without settings: no notification leaves");
    }
    TellOfTheRest(report);
}

}  // namespace checkconf
