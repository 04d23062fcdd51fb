#include "arraySim/control/commandParser.h"

#include <algorithm>
#include <iterator>
#include <sstream>
#include <string_view>

#include "apiMgmt/common/utils/stringUtil.h"
#include "arraySim/control/faultSyntax.h"
#include "arraySim/control/words.h"
#include "arraySim/model/modelFile.h"
#include "arraySim/model/numbers.h"

namespace arraysim {

namespace {

/** A row of the command table. CommandParser has a reader for each argument in `usage`. */
struct VerbInfo {
    Verb verb;
    std::string_view name;
    std::string_view usage;
    std::string_view help;
};

constexpr VerbInfo kVerbs[] = {
    {Verb::kSet, "set", "KIND INDEX ATTR VALUE", "set an attribute; VALUE is the rest of the line"},
    {Verb::kUnset, "unset", "KIND INDEX ATTR", "remove an attribute"},
    {Verb::kFail, "fail", "KIND INDEX [Down|Degraded]",
     "make an object fail, with everything that shows it, and raise an alert"},
    {Verb::kRecover, "recover", "KIND INDEX", "set an object to Up and deactivate its alerts"},
    {Verb::kAdd, "add", "KIND [ATTR=VALUE...]", "append an object to its list; prints its index"},
    {Verb::kRemove, "remove", "KIND INDEX", "remove an object"},
    {Verb::kGet, "get", "KIND [INDEX [ATTR]]", "print objects, the attributes of one, or one value"},
    {Verb::kExpect, "expect", "KIND INDEX ATTR VALUE", "fail unless the attribute has this value"},
    {Verb::kList, "list", "", "print all kinds with the number of objects"},
    {Verb::kDump, "dump", "[FILE]", "print the model as JSON, or write it to FILE"},
    {Verb::kLoad, "load", "FILE", "replace the model with one written by dump"},
    {Verb::kFault, "fault", "NAME [args] [on KIND] [for N]", "inject a fault; see below"},
    {Verb::kFaults, "faults", "", "print the active faults"},
    {Verb::kClear, "clear", "[NAME]", "remove all faults, or those with this name"},
    {Verb::kStats, "stats", "", "print counts of connections, exchanges and events"},
    {Verb::kEvent, "event", "TEXT", "send the daemon this trap command: eight numbers and a string"},
    {Verb::kMisc, "misc", "TEXT", "send the daemon an event with only a message"},
    {Verb::kScsi, "scsi", "TYPE STATUS [DISK-ROW]", "send the daemon the status of a SCSI initiator device"},
    {Verb::kSay, "say", "TEXT", "print a message on the simulator's output"},
    {Verb::kHelp, "help", "", "print this help"},
    {Verb::kQuit, "quit", "", "stop the simulator"},
};

/** Reads the words of one command after its verb. */
class CommandParser {
  public:
    CommandParser(const Catalogue& catalogue, const VerbInfo& info, const std::vector<std::string>& words)
        : catalogue_(catalogue), info_(info), words_(words) {
        command_.verb = info.verb;
    }

    Command Parse() {
        if (info_.verb == Verb::kFault) {
            command_.fault = ParseFault(catalogue_, {words_.begin() + 1, words_.end()});
            return std::move(command_);
        }
        std::istringstream usage{std::string(info_.usage)};
        for (std::string argument; usage >> argument;) {
            const bool is_optional = argument.starts_with('[');
            if (!is_optional || HasMore()) {
                ReadArgument(
                    argument.substr(is_optional ? 1 : 0, argument.find(']') - (is_optional ? 1 : 0)));
            }
        }
        if (info_.verb == Verb::kFail || info_.verb == Verb::kRecover) {
            CheckCondition();
        }
        if (HasMore()) {
            FailUsage("unexpected '" + words_[at_] + "'");
        }
        return std::move(command_);
    }

  private:
    void ReadArgument(std::string_view argument) {
        struct Reader {
            std::string_view argument;
            void (CommandParser::*read)();
        };
        static constexpr Reader kReaders[] = {{"KIND", &CommandParser::ReadKind},
                                              {"INDEX", &CommandParser::ReadIndex},
                                              {"ATTR", &CommandParser::ReadAttribute},
                                              {"VALUE", &CommandParser::ReadRest},
                                              {"TEXT", &CommandParser::ReadRest},
                                              {"FILE", &CommandParser::ReadFile},
                                              {"NAME", &CommandParser::ReadFaultName},
                                              {"Down|Degraded", &CommandParser::ReadCondition},
                                              {"ATTR=VALUE...", &CommandParser::ReadAssignments},
                                              {"TYPE", &CommandParser::ReadDeviceType},
                                              {"STATUS", &CommandParser::ReadDeviceStatus},
                                              {"DISK-ROW", &CommandParser::ReadDiskRow}};
        const auto* reader = std::find_if(std::begin(kReaders), std::end(kReaders),
                                          [&](const Reader& each) { return each.argument == argument; });
        (this->*reader->read)();
    }

    [[noreturn]] void FailUsage(const std::string& why) const {
        throw CommandError(why + "; usage: " + std::string(info_.name) + (info_.usage.empty() ? "" : " ") +
                           std::string(info_.usage));
    }

    bool HasMore() const { return at_ < words_.size(); }

    const std::string& Next() {
        if (!HasMore()) {
            FailUsage("missing argument");
        }
        return words_[at_++];
    }

    /** The rest of the line as one string; an empty one must be given as "". */
    void ReadRest() {
        if (!HasMore()) {
            FailUsage("missing argument");
        }
        command_.text = JoinWords(words_, at_);
        at_ = words_.size();
        CheckText(command_.text);
    }

    void ReadFile() { command_.text = Next(); }

    static void CheckText(const std::string& text) {
        if (!IsUtf8(text)) {
            throw CommandError("the string is not valid UTF-8");
        }
    }

    void ReadKind() {
        const std::string& name = Next();
        const std::optional<Selection> found = catalogue_.Find(name);
        if (!found) {
            throw CommandError("unknown kind '" + name + "'; `list` prints all");
        }
        if (info_.verb == Verb::kAdd && found->kind == nullptr) {
            throw CommandError(found->Name() + " contains several kinds; name one of them");
        }
        command_.selection = *found;
    }

    void ReadIndex() {
        const std::string& text = Next();
        command_.index = ParseUint32(text);
        if (!command_.index) {
            throw CommandError("'" + text + "' is not an API index");
        }
    }

    uint32_t ReadNumber(const char* what) {
        const std::string& text = Next();
        const std::optional<uint32_t> number = ParseUint32(text);
        if (!number || *number > INT32_MAX) {
            throw CommandError("'" + text + "' is not " + what + "; expected 0 to 2147483647");
        }
        return *number;
    }

    void ReadDeviceType() { command_.device_type = ReadNumber("a type"); }
    void ReadDeviceStatus() { command_.device_status = ReadNumber("a status"); }
    void ReadDiskRow() { command_.disk_row = ReadNumber("a row of the disk table"); }

    void ReadAttribute() {
        const std::string& name = Next();
        const Attribute* attribute = catalogue_.FindAttribute(command_.selection, name);
        if (attribute == nullptr) {
            throw CommandError(command_.selection.Name() + " has no attribute '" + name + "'");
        }
        command_.attribute = attribute->name();
    }

    void ReadCondition() {
        const std::string& text = Next();
        const std::optional<Condition> condition = ParseCondition(text);
        if (!condition || *condition == Condition::kUp) {
            throw CommandError("unexpected '" + text + "'; expected Down or Degraded");
        }
        command_.condition = *condition;
    }

    void CheckCondition() const {
        if (catalogue_.FindAttribute(command_.selection, "Status") == nullptr) {
            throw CommandError(command_.selection.Name() + " has no status");
        }
    }

    void ReadFaultName() {
        command_.text = Next();
        const std::span<const FaultInfo> table = FaultTable();
        if (!command_.text.empty() && std::none_of(table.begin(), table.end(), [&](const FaultInfo& each) {
                return each.name == command_.text;
            })) {
            throw CommandError("unknown fault '" + command_.text + "'");
        }
    }

    void ReadAssignments() {
        while (HasMore()) {
            ReadAssignment(*command_.selection.kind);
        }
    }

    void ReadAssignment(const Kind& kind) {
        const std::string& word = Next();
        const size_t equals = word.find('=');
        if (equals == std::string::npos) {
            FailUsage("unexpected '" + word + "'; expected ATTR=VALUE");
        }
        const std::string name = word.substr(0, equals);
        const std::string value = word.substr(equals + 1);
        const std::optional<size_t> position = kind.FindAttribute(name);
        if (!position) {
            throw CommandError(kind.name + " has no attribute '" + name + "'");
        }
        if (position == kind.key) {
            command_.index = ParseUint32(value);
            if (!command_.index) {
                throw CommandError("'" + value + "' is not an API index");
            }
            return;
        }
        if (kind.attributes[*position].rule.verb == ValueRule::Verb::kCount) {
            throw CommandError(kind.attributes[*position].name() +
                               " is computed from the model and cannot be set");
        }
        CheckText(value);
        command_.values.emplace_back(kind.attributes[*position].name(), value);
    }

    const Catalogue& catalogue_;
    const VerbInfo& info_;
    const std::vector<std::string>& words_;
    size_t at_ = 1;
    Command command_;
};

std::string HelpLine(size_t width, std::string_view name, std::string_view usage, std::string_view help) {
    const std::string syntax = std::string(name) + (usage.empty() ? "" : " ") + std::string(usage);
    return FormatString("%-*s %s\n", static_cast<int>(width), syntax.c_str(), std::string(help).c_str());
}

}  // namespace

Command ParseCommand(const Catalogue& catalogue, const std::vector<std::string>& words) {
    if (words.empty()) {
        throw CommandError("missing command; `help` prints all");
    }
    const auto* info = std::find_if(std::begin(kVerbs), std::end(kVerbs),
                                    [&](const VerbInfo& each) { return each.name == words[0]; });
    if (info == std::end(kVerbs)) {
        throw CommandError("unknown command '" + words[0] + "'; `help` prints all");
    }
    return CommandParser(catalogue, *info, words).Parse();
}

std::string HelpText() {
    std::string text;
    for (const VerbInfo& each : kVerbs) {
        text += HelpLine(38, each.name, each.usage, each.help);
    }
    text += "\nFaults affect all exchanges, or those `on KIND` (`on Ping`: pings), or the next `for N`:\n";
    for (const FaultInfo& each : FaultTable()) {
        text += "  " + HelpLine(36, each.name, each.usage, each.help);
    }
    return text;
}

}  // namespace arraysim
