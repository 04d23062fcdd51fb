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

/** A row of the table of commands. CommandParser has a reader for each word of the usage. */
struct VerbInfo {
    Verb verb;
    std::string_view name;
    std::string_view usage;
    std::string_view help;
};

constexpr VerbInfo kVerbs[] = {
    {Verb::kSet, "set", "KIND INDEX ATTR VALUE", "give an attribute a value; VALUE is the rest of the line"},
    {Verb::kUnset, "unset", "KIND INDEX ATTR", "take an attribute away"},
    {Verb::kFail, "fail", "KIND INDEX [Down|Degraded]",
     "put an object into a bad state: its signs, what holds it, an alert"},
    {Verb::kRecover, "recover", "KIND INDEX", "put it back to Up and end its alerts"},
    {Verb::kAdd, "add", "KIND [ATTR=VALUE...]", "make an object at the end of its list; prints its index"},
    {Verb::kRemove, "remove", "KIND INDEX", "take an object away"},
    {Verb::kGet, "get", "KIND [INDEX [ATTR]]", "print objects, the attributes of one, or one value"},
    {Verb::kExpect, "expect", "KIND INDEX ATTR VALUE", "fail unless the attribute has this value"},
    {Verb::kList, "list", "", "print all kinds and how many there are"},
    {Verb::kDump, "dump", "[FILE]", "write the model as JSON"},
    {Verb::kLoad, "load", "FILE", "replace the model by one that was dumped"},
    {Verb::kFault, "fault", "NAME [args] [on KIND] [for N]", "switch a fault on, see below"},
    {Verb::kFaults, "faults", "", "print the faults that are on"},
    {Verb::kClear, "clear", "[NAME]", "switch all faults off, or those of a name"},
    {Verb::kStats, "stats", "", "print the exchanges so far"},
    {Verb::kEvent, "event", "TEXT", "send the daemon a trap command as it stands: eight numbers and a text"},
    {Verb::kMisc, "misc", "TEXT", "send it an alert in words"},
    {Verb::kScsi, "scsi", "TYPE STATUS [DISK-ROW]", "send it the status of a SCSI initiator device"},
    {Verb::kSay, "say", "TEXT", "print a text where the simulator runs"},
    {Verb::kHelp, "help", "", "print this"},
    {Verb::kQuit, "quit", "", "end the simulator"},
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
            FailUsage("'" + words_[at_] + "' is too much");
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
            FailUsage("something is missing");
        }
        return words_[at_++];
    }

    /** The rest of the line as one string; an empty one must be given as "". */
    void ReadRest() {
        if (!HasMore()) {
            FailUsage("something is missing");
        }
        command_.text = JoinWords(words_, at_);
        at_ = words_.size();
        CheckText(command_.text);
    }

    void ReadFile() { command_.text = Next(); }

    static void CheckText(const std::string& text) {
        if (!IsUtf8(text)) {
            throw CommandError("the text is not UTF-8");
        }
    }

    void ReadKind() {
        const std::string& name = Next();
        const std::optional<Selection> found = catalogue_.Find(name);
        if (!found) {
            throw CommandError("unknown kind '" + name + "'; `list` prints all");
        }
        if (info_.verb == Verb::kAdd && found->kind == nullptr) {
            throw CommandError(found->Name() + " holds several kinds; name one of them");
        }
        command_.selection = *found;
    }

    void ReadIndex() {
        const std::string& text = Next();
        command_.index = ReadUint32(text);
        if (!command_.index) {
            throw CommandError("'" + text + "' is no API index");
        }
    }

    uint32_t ReadNumber(const char* what) {
        const std::string& text = Next();
        const std::optional<uint32_t> number = ReadUint32(text);
        if (!number || *number > INT32_MAX) {
            throw CommandError("'" + text + "' is not " + what);
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
        const std::optional<Condition> condition = ConditionOf(text);
        if (!condition || *condition == Condition::kUp) {
            throw CommandError("'" + text + "' is neither Down nor Degraded");
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
            FailUsage("'" + word + "' is not ATTR=VALUE");
        }
        const std::string name = word.substr(0, equals);
        const std::string value = word.substr(equals + 1);
        const std::optional<size_t> position = kind.FindAttribute(name);
        if (!position) {
            throw CommandError(kind.name + " has no attribute '" + name + "'");
        }
        if (position == kind.key) {
            command_.index = ReadUint32(value);
            if (!command_.index) {
                throw CommandError("'" + value + "' is no API index");
            }
            return;
        }
        if (kind.attributes[*position].rule.verb == ValueRule::Verb::kCount) {
            throw CommandError(kind.attributes[*position].name() + " follows the model and cannot be set");
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
        throw CommandError("no command; `help` prints all");
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
    text +=
        "\nFaults strike every exchange, or those `on KIND` (`on Ping` for pings), or the next `for N`:\n";
    for (const FaultInfo& each : FaultTable()) {
        text += "  " + HelpLine(36, each.name, each.usage, each.help);
    }
    return text;
}

}  // namespace arraysim
