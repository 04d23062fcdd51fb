#include "tools/checkconf/program.h"

#include <CLI/CLI.hpp>
#include <ostream>
#include <string>

#include "tools/checkconf/installationCheck.h"
#include "tools/checkconf/report.h"
#include "tools/commandLine/completion.h"

namespace checkconf {

namespace {

enum ExitStatus { kNoProblem = 0, kWarnings = 1, kErrors = 2, kUsage = 3 };

constexpr const char* kDescription =
    "Checks the files of snmpSubagent with the daemon's own parsers, prints the resulting settings, and "
    "warns\n"
    "of everything that the parsers interpret differently from what a person would expect. It changes "
    "nothing\n"
    "and does not need a running daemon.\n";

constexpr const char* kFooter =
    "Exit status:\n"
    "  0  no problem was found\n"
    "  1  there are warnings: a setting has an unexpected effect\n"
    "  2  there are errors: the daemon would not start, or managers could not reach the array through it;\n"
    "     or the output could not be written\n"
    "  3  the command line is wrong\n"
    "\nRun it as root, like the daemon: other users cannot read all files.\n"
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
    return report.warnings() > 0 && !allows_warnings ? kWarnings : kNoProblem;
}

}  // namespace

int RunProgram(int argc, const char* const* argv, std::ostream& out, std::ostream& err) {
    CLI::App app(kDescription, "snmpSubagent-checkconf");
    app.footer(kFooter);
    commandline::AddVersionOption(app);
    Options options;
    app.add_option("--root", options.root,
                   "Check the files in this directory instead of those of the machine")
        ->check(CLI::ExistingDirectory)
        ->type_name("DIR")
        ->capture_default_str();
    app.add_flag("--quiet", options.is_quiet, "Print only warnings and errors");
    app.add_flag("--allow-warnings", options.allows_warnings,
                 "Exit with status 0 if there are only warnings");
    if (commandline::PrintCandidates(app, argc, argv, out)) {
        return kNoProblem;
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error, out, err) == 0 ? kNoProblem : kUsage;
    }
    Report report(out, options.is_quiet);
    CheckInstallation(options.root, report);
    report.Summarise();
    return StatusOf(report, options.allows_warnings);
}

}  // namespace checkconf
