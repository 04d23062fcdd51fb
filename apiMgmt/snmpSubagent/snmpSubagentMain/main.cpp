#include <unistd.h>

#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

#include "apiMgmt/common/utils/version.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/startUp.h"

namespace {

constexpr int kWrongUsage = 2;

constexpr const char* kUsage =
    "Usage: snmpSubagent [ARGUMENT...]\n"
    "SNMP service of a storage array; goes into the background and starts snmpd. Every other snmpd is "
    "killed.\n"
    "\n"
    "Arguments are not interpreted. The daemon passes them on when it restarts.\n"
    "  --help     print this text and exit\n"
    "  --version  print the version and exit\n"
    "\n"
    "See snmpSubagent(8). snmpSubagent-checkconf checks the settings.\n";

int printed(const char* text) {
    return fputs(text, stdout) >= 0 && fflush(stdout) == 0 ? 0 : kWrongUsage;
}

// Handles --help and --version, and rejects every other argument that begins with "-". Returns the exit
// status of the process, or nothing if the daemon must start.
std::optional<int> answer_options(int argc, const char* const argv[]) {
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (!argument.starts_with("-"))
            continue;
        if (argument == "--help")
            return printed(kUsage);
        if (argument == "--version")
            return printed((std::string("snmpSubagent ") + kVersion + "\n").c_str());
        fprintf(stderr, "snmpSubagent: unknown option '%s'; see --help\n", argv[i]);
        return kWrongUsage;
    }
    return std::nullopt;
}

}  // namespace

int main(int argc, char* argv[]) {
    if (const std::optional<int> status = answer_options(argc, argv))
        return *status;
    const int status = run_subagent(argc, argv);
    // The other threads are not joined, so static objects must not be destroyed while they run.
    fflush(nullptr);
    _exit(status);
}
