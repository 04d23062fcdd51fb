#include "arraySim/control/command.h"

#include <algorithm>

#include "arraySim/model/modelFile.h"
#include "arraySim/model/numbers.h"

namespace arraysim {

namespace {

/** Reads the words of one command after its verb, each of them as something. */
class CommandParser {
  public:
    CommandParser(const Catalogue& catalogue, const VerbInfo& info, const std::vector<std::string>& words)
        : catalogue_(catalogue), info_(info), words_(words) {
        command_.verb = info.verb;
    }

    Command Parse() {
        switch (info_.verb) {
            case Verb::kSet:
            case Verb::kExpect:
                ReadAttributeOfObject();
                command_.text = Rest();
                break;
            case Verb::kUnset:
                ReadAttributeOfObject();
                break;
            case Verb::kFail:
                ReadObject();
                command_.condition = ReadCondition();
                CheckCondition();
                break;
            case Verb::kRecover:
                ReadObject();
                CheckCondition();
                break;
            case Verb::kRemove:
                ReadObject();
                break;
            case Verb::kAdd:
                ReadAdd();
                break;
            case Verb::kGet:
                ReadGet();
                break;
            case Verb::kDump:
            case Verb::kClear:
                command_.text = HasMore() ? Next() : "";
                CheckFaultName();
                break;
            case Verb::kLoad:
                command_.text = Next();
                break;
            case Verb::kEvent:
            case Verb::kMisc:
            case Verb::kSay:
                command_.text = Rest();
                break;
            case Verb::kScsi:
                command_.device_type = ReadNumber("a type");
                command_.device_status = ReadNumber("a status");
                command_.disk_row = HasMore() ? ReadNumber("a row of the disk table") : 0;
                break;
            case Verb::kFault:
                command_.fault = ParseFault(catalogue_, {words_.begin() + 1, words_.end()});
                at_ = words_.size();
                break;
            case Verb::kList:
            case Verb::kFaults:
            case Verb::kStats:
            case Verb::kHelp:
            case Verb::kQuit:
                break;
        }
        if (HasMore()) {
            FailUsage("'" + words_[at_] + "' is too much");
        }
        return std::move(command_);
    }

  private:
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

    /** The rest of the line as one text; an empty one must be given as "". */
    std::string Rest() {
        if (!HasMore()) {
            FailUsage("something is missing");
        }
        std::string text = JoinWords(words_, at_);
        at_ = words_.size();
        CheckText(text);
        return text;
    }

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

    void ReadObject() {
        ReadKind();
        ReadIndex();
    }

    /** An attribute that some kind of the selection has. */
    void ReadAttribute() {
        const std::string& name = Next();
        for (const Kind& kind : catalogue_.kinds()) {
            if (kind.list == command_.selection.list && command_.selection.Matches(kind)) {
                if (const std::optional<size_t> position = kind.FindAttribute(name)) {
                    command_.attribute = kind.attributes[*position].name();
                    return;
                }
            }
        }
        throw CommandError(command_.selection.Name() + " has no attribute '" + name + "'");
    }

    void ReadAttributeOfObject() {
        ReadObject();
        ReadAttribute();
    }

    Condition ReadCondition() {
        if (!HasMore()) {
            return Condition::kDown;
        }
        const std::string& text = Next();
        const std::optional<Condition> condition = ConditionOf(text);
        if (!condition || *condition == Condition::kUp) {
            throw CommandError("'" + text + "' is neither Down nor Degraded");
        }
        return *condition;
    }

    void CheckCondition() const {
        for (const Kind& kind : catalogue_.kinds()) {
            if (kind.list == command_.selection.list && HasCondition(kind)) {
                return;
            }
        }
        throw CommandError(command_.selection.Name() + " has no status");
    }

    void CheckFaultName() const {
        const std::span<const FaultInfo> table = FaultTable();
        if (info_.verb == Verb::kClear && !command_.text.empty() &&
            std::none_of(table.begin(), table.end(),
                         [&](const FaultInfo& each) { return each.name == command_.text; })) {
            throw CommandError("unknown fault '" + command_.text + "'");
        }
    }

    void ReadAdd() {
        ReadKind();
        const Kind* kind = command_.selection.kind;
        if (kind == nullptr) {
            throw CommandError(command_.selection.Name() + " holds several kinds; name one of them");
        }
        while (HasMore()) {
            ReadAssignment(*kind);
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
        if (kind.attributes[*position].rule.verb == Rule::Verb::kCount) {
            throw CommandError(kind.attributes[*position].name() + " follows the model and cannot be set");
        }
        CheckText(value);
        command_.values.emplace_back(kind.attributes[*position].name(), value);
    }

    void ReadGet() {
        ReadKind();
        if (HasMore()) {
            ReadIndex();
        }
        if (HasMore()) {
            ReadAttribute();
        }
    }

    const Catalogue& catalogue_;
    const VerbInfo& info_;
    const std::vector<std::string>& words_;
    size_t at_ = 1;
    Command command_;
};

}  // namespace

Command ParseCommand(const Catalogue& catalogue, const std::vector<std::string>& words) {
    if (words.empty()) {
        throw CommandError("no command; `help` prints all");
    }
    const std::span<const VerbInfo> table = VerbTable();
    const auto info =
        std::find_if(table.begin(), table.end(), [&](const VerbInfo& each) { return each.name == words[0]; });
    if (info == table.end()) {
        throw CommandError("unknown command '" + words[0] + "'; `help` prints all");
    }
    return CommandParser(catalogue, *info, words).Parse();
}

}  // namespace arraysim
