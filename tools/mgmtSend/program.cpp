#include "tools/mgmtSend/program.h"

#include <CLI/CLI.hpp>
#include <istream>
#include <optional>
#include <ostream>
#include <string>

#include "apiMgmt/common/utils/pathConstants.h"
#include "apiMgmt/common/wirelink/wireLink.h"
#include "tools/mgmtSend/catalogueText.h"
#include "tools/mgmtSend/mgmtMessage.h"
#include "tools/mgmtSend/trapText.h"

namespace {

enum ExitStatus { kDelivered = 0, kNotReached = 1, kUsage = 2 };

// For one message, or to be let in: the daemon serves one sender at a time.
constexpr long kTimeout_s = 60;
constexpr unsigned long kSize_bytes = 65536;

constexpr const char* kStandardInput = "-";

constexpr const char* kDescription =
    "Sends the SNMP daemon what the array application sends: events that become notifications, and commands "
    "of an\n"
    "operator. The daemon does not answer: what became of a message is in its log and at the receiver.\n";

constexpr const char* kFooter =
    "Exit status:\n"
    "  0  delivered to the daemon's socket\n"
    "  1  the daemon cannot be reached, or has closed before all was sent; or the output could not\n"
    "     be written\n"
    "  2  the command line is wrong; nothing was sent, except lines of standard input before the one that is "
    "wrong\n"
    "\nExamples:\n"
    "  mgmtSend --list\n"
    "  mgmtSend trap disk-status 17 --alert 'Disk 01-04 was pulled'\n"
    "  mgmtSend trap 202 17 --cleared --event 13,1,37\n"
    "  mgmtSend trap ctlr-comp-status 1 fan 0\n"
    "  mgmtSend trap misc --alert 'the clock was set back'\n"
    "  mgmtSend raw '4 4 4 201 0 0 0 0 hello'\n"
    "  generate-events | mgmtSend raw -\n"
    "  mgmtSend verbose on\n";

/** What the command line asks for. */
struct Options {
    std::string socket_path = kSnmpSubagentSocket;
    bool list = false;
    TrapRequest trap;
    bool print = false;
    std::string raw;
    bool verbose = false;
};

/** One line without its end, or none at the end of the input. One that is too long is not read to its end. */
std::optional<std::string> ReadLine(std::istream& in) {
    std::string line;
    for (char c; line.size() <= kGreatestTrapText && in.get(c);) {
        if (c == '\n') {
            return line;
        }
        line += c;
    }
    return line.empty() ? std::nullopt : std::optional(line);
}

class Program {
  public:
    Program(std::istream& in, std::ostream& out, std::ostream& err) : in_(in), out_(out), err_(err) {
        app_.footer(kFooter);
        app_.require_subcommand(0, 1);
        app_.fallthrough();
        app_.add_option("--socket", options_.socket_path, "Where the daemon listens")->capture_default_str();
        app_.add_flag("--list", options_.list, "Print all notifications with their words and arguments");
        AddTrap();
        raw_ = app_.add_subcommand("raw", "Send the text of a trap command as it stands");
        raw_->add_option(
                "TEXT", options_.raw,
                "Eight numbers, a blank behind each, and a text; - reads such lines from standard input "
                "and sends them on one connection, which keeps others out as long as it lasts")
            ->required();
        lite_objects_ = app_.add_subcommand(
            "lite-objects", "Switch between reduced and whole objects in the daemon's requests to the array");
        show_outstanding_ = app_.add_subcommand(
            "show-outstanding", "Let the daemon log the objects of which a notification is outstanding");
        verbose_ = app_.add_subcommand("verbose", "Switch the daemon's debug lines");
        verbose_
            ->add_option_function<std::string>(
                "on|off", [this](const std::string& word) { options_.verbose = word == "on"; },
                "Whether they are written")
            ->required()
            ->check(CLI::IsMember({"on", "off"}));
    }

    int Run(int argc, const char* const* argv) {
        try {
            app_.parse(argc, argv);
            return Act();
        } catch (const CLI::ParseError& error) {
            return app_.exit(error, out_, err_) == 0 ? kDelivered : kUsage;
        } catch (const UsageError& error) {
            err_ << "mgmtSend: " << error.what() << '\n';
            return kUsage;
        } catch (const WireLinkError& error) {
            err_ << "mgmtSend: the daemon cannot be reached: " << error.what() << '\n';
            return kNotReached;
        }
    }

  private:
    void AddTrap() {
        trap_ = app_.add_subcommand("trap", "Send an event by its number or word; --list has them");
        trap_->add_option("KIND", options_.trap.kind, "Number or word of the notification")->required();
        trap_->add_option("ARGUMENT", options_.trap.arguments,
                          "A, B, C and D: numbers, B also the word of a component");
        trap_->add_option(
            "--alert", options_.trap.alert,
            "Text for the receiver; one that holds @@@ is sent as the whole of the alert string");
        trap_->add_option("--event", options_.trap.event_id,
                          "Event id, three numbers as in 13,1,37; otherwise that of the kind, or 0,0,0");
        trap_->add_flag("--cleared", options_.trap.cleared, "The event is that something is over");
        trap_->add_flag("--print", options_.print,
                        "Print the text of the trap command in place of sending it");
    }

    int Act() {
        if (options_.list) {
            out_ << CatalogueText();
        } else if (trap_->parsed()) {
            ActOnTrap();
        } else if (raw_->parsed()) {
            options_.raw == kStandardInput ? SendLines() : SendRaw();
        } else if (lite_objects_->parsed()) {
            Send(MgmtEnvelope(MGMT_SPECIFIC_TEMP_TEST));
        } else if (show_outstanding_->parsed()) {
            Send(MgmtEnvelope(MGMT_SPECIFIC_DISPLAY_TRAPS));
        } else if (verbose_->parsed()) {
            Send(MgmtEnvelope(options_.verbose ? MGMT_SPECIFIC_VERBOSE_ON : MGMT_SPECIFIC_VERBOSE_OFF));
        } else {
            throw UsageError("what is to be sent? --help tells");
        }
        return kDelivered;
    }

    void ActOnTrap() {
        const std::string text = TrapText(options_.trap);
        if (options_.print) {
            out_ << text << '\n';
        } else {
            Send(MgmtEnvelope(MGMT_SPECIFIC_SEND_TRAP, text));
        }
    }

    void SendRaw() {
        if (options_.raw.empty()) {
            throw UsageError("an empty text is no trap command");
        }
        CheckTrapText(options_.raw);
        Send(MgmtEnvelope(MGMT_SPECIFIC_SEND_TRAP, options_.raw));
    }

    /** Empty lines are passed over. */
    void SendLines() {
        WireLinkClient client(Endpoint());
        for (size_t number = 1; const std::optional<std::string> line = ReadLine(in_); ++number) {
            if (line->size() > kGreatestTrapText) {
                throw UsageError("line " + std::to_string(number) + " is longer than the " +
                                 std::to_string(kGreatestTrapText) +
                                 " bytes that the daemon looks at; all lines before it were sent");
            }
            if (!line->empty()) {
                client.SendGPBMsg(MgmtEnvelope(MGMT_SPECIFIC_SEND_TRAP, *line));
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
    CLI::App* verbose_ = nullptr;
};

}  // namespace

int RunProgram(int argc, const char* const* argv, std::istream& in, std::ostream& out, std::ostream& err) {
    return Program(in, out, err).Run(argc, argv);
}
