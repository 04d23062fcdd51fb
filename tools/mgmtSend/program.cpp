#include "tools/mgmtSend/program.h"

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <istream>
#include <optional>
#include <ostream>
#include <string>

#include "apiMgmt/common/utils/pathConstants.h"
#include "apiMgmt/common/utils/textFile.h"
#include "apiMgmt/common/wirelink/wireLink.h"
#include "tools/commandLine/completion.h"
#include "tools/commandLine/usageError.h"
#include "tools/mgmtSend/mgmtMessage.h"
#include "tools/mgmtSend/statusReport.h"
#include "tools/mgmtSend/trapCommandBuilder.h"

namespace mgmtsend {

using commandline::UsageError;

namespace {

enum ExitStatus { kDelivered = 0, kUnreachable = 1, kUsage = 2 };

// Of each step, including the wait for other senders: the daemon serves one at a time.
constexpr long kTimeout_s = 60;
constexpr unsigned long kSize_bytes = 65536;

constexpr const char* kStandardInput = "-";

constexpr const char* kDescription =
    "Sends a running snmpSubagent the messages that the array application sends: events, which become\n"
    "notifications, and operator commands. The daemon does not respond: to see the effect of a message, "
    "look\n"
    "at the daemon's log and at the receiver. 'status' shows the state of the service.\n";

constexpr const char* kFooter =
    "Exit status:\n"
    "  0  the message was delivered to the daemon's socket\n"
    "  1  the daemon cannot be reached or closed the connection early, its status cannot be read, or the\n"
    "     output could not be written\n"
    "  2  the command line is wrong; nothing was sent, except lines of standard input before an invalid one\n"
    "\nExamples:\n"
    "  mgmtSend --list\n"
    "  mgmtSend trap disk-status 17 --alert 'Disk 01-04 was pulled'\n"
    "  mgmtSend trap 202 17 --cleared --event 13,1,37\n"
    "  mgmtSend trap ctlr-comp-status 1 fan 0\n"
    "  mgmtSend trap misc --alert 'the clock was set back'\n"
    "  mgmtSend raw '4 4 4 201 0 0 0 0 hello'\n"
    "  generate-events | mgmtSend raw -\n"
    "  mgmtSend verbose on\n"
    "  mgmtSend status\n";

/** The options of the command line. */
struct Options {
    std::string socket_path = kSnmpSubagentSocket;
    bool list = false;
    TrapRequest trap;
    bool print = false;
    std::string raw;
    bool verbose = false;
    std::string status_file = kStatusFile;
    bool json = false;
};

class UnreadableStatus : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/** Reads a line without its line feed; nothing at the end of the input. Stops reading when the line is too
 * long. */
std::optional<std::string> ReadLine(std::istream& in) {
    std::string line;
    for (char c; line.size() <= kMaximumTrapCommand && in.get(c);) {
        if (c == '\n') {
            return line;
        }
        line += c;
    }
    return line.empty() ? std::nullopt : std::optional(line);
}

/** The keywords of notifications and components. */
std::optional<commandline::Candidates> FindCandidates(const commandline::UnfinishedLine& line) {
    const bool is_argument = line.option == nullptr && !line.last.starts_with('-');
    if (!is_argument || line.command->get_name() != "trap") {
        return std::nullopt;
    }
    return TrapKeywords(line.arguments);
}

class Program {
  public:
    Program(std::istream& in, std::ostream& out, std::ostream& err) : in_(in), out_(out), err_(err) {
        app_.footer(kFooter);
        commandline::AddVersionOption(app_);
        app_.require_subcommand(0, 1);
        app_.fallthrough();
        app_.add_option("--socket", options_.socket_path, "Socket of the daemon")->capture_default_str();
        app_.add_flag("--list", options_.list, "List all notifications with their keywords and arguments");
        AddTrap();
        raw_ = app_.add_subcommand("raw", "Send a trap command verbatim");
        raw_->add_option(
                "TEXT", options_.raw,
                "Eight numbers, each followed by a space, and a string; - reads such lines from standard "
                "input and sends them on one connection. The daemon accepts no other until it ends")
            ->required();
        lite_objects_ = app_.add_subcommand(
            "lite-objects", "Toggle whether the daemon requests reduced objects from the array");
        show_outstanding_ = app_.add_subcommand(
            "show-outstanding", "Print the outstanding objects, and make the daemon log them in detail");
        status_ = app_.add_subcommand("status", "Show links, data age, notifications and unhealthy objects");
        status_->add_flag("--json", options_.json, "Print JSON");
        for (CLI::App* each : {show_outstanding_, status_})
            each->add_option("--file", options_.status_file, "File in which the daemon publishes its status")
                ->capture_default_str();
        verbose_ = app_.add_subcommand("verbose", "Switch the daemon's debug lines on or off");
        verbose_
            ->add_option_function<std::string>(
                "on|off", [this](const std::string& word) { options_.verbose = word == "on"; }, "New state")
            ->required()
            ->check(CLI::IsMember({"on", "off"}));
    }

    int Run(int argc, const char* const* argv) {
        if (commandline::PrintCandidates(app_, argc, argv, out_, FindCandidates)) {
            return kDelivered;
        }
        try {
            app_.parse(argc, argv);
            return Act();
        } catch (const CLI::ParseError& error) {
            return app_.exit(error, out_, err_) == 0 ? kDelivered : kUsage;
        } catch (const UsageError& error) {
            err_ << "mgmtSend: " << error.what() << '\n';
            return kUsage;
        } catch (const WireLinkError& error) {
            err_ << "mgmtSend: cannot reach the daemon: " << error.what() << '\n';
            return kUnreachable;
        } catch (const UnreadableStatus& error) {
            err_ << "mgmtSend: " << error.what() << '\n';
            return kUnreachable;
        }
    }

  private:
    void AddTrap() {
        trap_ = app_.add_subcommand("trap", "Send an event, given by number or keyword; see --list");
        trap_->add_option("KIND", options_.trap.kind, "Number or keyword of the notification")->required();
        trap_->add_option("ARGUMENT", options_.trap.arguments,
                          "A, B, C and D: numbers; B may also be the keyword of a component");
        trap_->add_option("--alert", options_.trap.alert,
                          "Alert text that the receiver shows; if it contains @@@, it is sent as the "
                          "complete alert string");
        trap_->add_option("--event", options_.trap.event_id,
                          "Event ID, for example 13,1,37; the default is that of the kind, or 0,0,0");
        trap_->add_flag("--cleared", options_.trap.cleared, "Report the end of an alert");
        trap_->add_flag("--print", options_.print, "Print the trap command instead of sending it");
    }

    int Act() {
        if (options_.list) {
            out_ << ListNotifications();
        } else if (trap_->parsed()) {
            ActOnTrap();
        } else if (raw_->parsed()) {
            options_.raw == kStandardInput ? SendLines() : SendRaw();
        } else if (lite_objects_->parsed()) {
            Send(BuildMessage(MGMT_SPECIFIC_TEMP_TEST));
        } else if (show_outstanding_->parsed()) {
            Send(BuildMessage(MGMT_SPECIFIC_DISPLAY_TRAPS));
            out_ << FormatUnhealthyObjects(ReadStatus());
        } else if (status_->parsed()) {
            const std::string status = ReadStatus();
            out_ << (options_.json ? FormatStatusJson(status)
                                   : FormatStatus(status, static_cast<double>(time(nullptr))));
        } else if (verbose_->parsed()) {
            Send(BuildMessage(options_.verbose ? MGMT_SPECIFIC_VERBOSE_ON : MGMT_SPECIFIC_VERBOSE_OFF));
        } else {
            throw UsageError("missing command; see --help");
        }
        return kDelivered;
    }

    void ActOnTrap() {
        const std::string command = BuildTrapCommand(options_.trap);
        if (options_.print) {
            out_ << command << '\n';
        } else {
            Send(BuildMessage(MGMT_SPECIFIC_SEND_TRAP, command));
        }
    }

    std::string ReadStatus() const {
        if (const std::optional<std::string> text = ReadTextFile(options_.status_file)) {
            return *text;
        }
        throw UnreadableStatus(options_.status_file + ": " + strerror(errno) +
                               (errno == ENOENT ? "; the daemon has not run since the machine booted" : ""));
    }

    void SendRaw() {
        if (options_.raw.empty()) {
            throw UsageError("empty trap command");
        }
        CheckTrapCommand(options_.raw);
        Send(BuildMessage(MGMT_SPECIFIC_SEND_TRAP, options_.raw));
    }

    /** Empty lines are ignored. */
    void SendLines() {
        WireLinkClient client(Endpoint());
        for (size_t number = 1; const std::optional<std::string> line = ReadLine(in_); ++number) {
            if (line->size() > kMaximumTrapCommand) {
                throw UsageError("standard input:" + std::to_string(number) + ": longer than " +
                                 std::to_string(kMaximumTrapCommand) +
                                 " bytes; the lines before it were sent");
            }
            if (!line->empty()) {
                client.SendGPBMsg(BuildMessage(MGMT_SPECIFIC_SEND_TRAP, *line));
            }
        }
    }

    WireLinkEndpoint Endpoint() const {
        return WireLinkEndpoint::CreateLocalEndpoint(options_.socket_path, kTimeout_s, kSize_bytes);
    }

    void Send(const protoIPCMsg::GPBIPCMsg& message) { WireLinkClient(Endpoint()).SendGPBMsg(message); }

    std::istream& in_;
    std::ostream& out_;
    std::ostream& err_;
    Options options_;
    CLI::App app_{kDescription, "mgmtSend"};
    CLI::App* trap_ = nullptr;
    CLI::App* raw_ = nullptr;
    CLI::App* lite_objects_ = nullptr;
    CLI::App* show_outstanding_ = nullptr;
    CLI::App* status_ = nullptr;
    CLI::App* verbose_ = nullptr;
};

}  // namespace

int RunProgram(int argc, const char* const* argv, std::istream& in, std::ostream& out, std::ostream& err) {
    return Program(in, out, err).Run(argc, argv);
}

}  // namespace mgmtsend
