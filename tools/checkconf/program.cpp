#include "tools/checkconf/program.h"

#include <CLI/CLI.hpp>
#include <ostream>
#include <string>

#include "tools/checkconf/checks.h"
#include "tools/checkconf/report.h"

namespace checkconf {

namespace {

enum ExitStatus { kFine = 0, kWarnings = 1, kErrors = 2, kUsage = 3 };

constexpr const char* kDescription =
    "Tells what snmpSubagent will make of its files, read as the daemon reads them, and warns of what its "
    "readers\n"
    "take otherwise than a person would. Nothing is changed, and no daemon needs to run.\n";

constexpr const char* kFooter =
    "Exit status:\n"
    "  0  fine\n"
    "  1  there are warnings: something is not as it looks\n"
    "  2  there are errors: the daemon would not start, or nobody could reach the array through it; or\n"
    "     what was found could not be written\n"
    "  3  the command line is wrong\n"
    "\nRun it as root, as the daemon runs: other users may not read all files.\n"
    "\nExamples:\n"
    "  snmpSubagent-checkconf\n"
    "  snmpSubagent-checkconf --quiet && systemctl restart snmpsubagent\n"
    "  snmpSubagent-checkconf --root /srv/new-controller\n";

struct Options {
    std::string root = "/";
    bool is_quiet = false;
    bool allows_warnings = false;
};

ExitStatus StatusOf(const Report& report, bool allows_warnings) {
    if (report.errors() > 0)
        return kErrors;
    return report.warnings() > 0 && !allows_warnings ? kWarnings : kFine;
}

}  // namespace

int RunProgram(int argc, const char* const* argv, std::ostream& out, std::ostream& err) {
    CLI::App app(kDescription, "snmpSubagent-checkconf");
    app.footer(kFooter);
    Options options;
    app.add_option("--root", options.root,
                   "Look at the files below this folder in place of those of the machine")
        ->check(CLI::ExistingDirectory)
        ->type_name("DIR")
        ->capture_default_str();
    app.add_flag("--quiet", options.is_quiet, "Print warnings and errors only");
    app.add_flag("--allow-warnings", options.allows_warnings, "Exit status 0 when there are warnings only");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error, out, err) == 0 ? kFine : kUsage;
    }
    Report report(out, options.is_quiet);
    CheckAll(options.root, report);
    report.Close();
    return StatusOf(report, options.allows_warnings);
}

}  // namespace checkconf
