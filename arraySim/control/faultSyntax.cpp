#include "arraySim/control/faultSyntax.h"

#include "apiMgmt/common/utils/stringUtil.h"
#include "arraySim/control/words.h"
#include "arraySim/model/modelFile.h"
#include "arraySim/model/numbers.h"

namespace arraysim {

namespace {

using Words = std::vector<std::string>;

[[noreturn]] void FailUsage(const FaultInfo& info, const std::string& why) {
    throw CommandError(why + "; usage: fault " + std::string(info.name) + (info.usage.empty() ? "" : " ") +
                       std::string(info.usage) + " [on KIND] [for N]");
}

const FaultInfo& FaultNamed(const std::string& name) {
    for (const FaultInfo& each : FaultTable()) {
        if (each.name == name) {
            return each;
        }
    }
    throw CommandError("unknown fault '" + name + "'; `help` prints all");
}

/** If the last word but one is `word`, removes both and returns the last. */
std::optional<std::string> TakeTail(Words& words, const char* word) {
    if (words.size() < 3 || words[words.size() - 2] != word) {
        return std::nullopt;
    }
    std::string argument = words.back();
    words.resize(words.size() - 2);
    return argument;
}

std::string TopicNamed(const Catalogue& catalogue, const FaultInfo& info, const std::string& name) {
    if (CompareNoCase(name, std::string(kPingTopic)) == 0) {
        if (info.reach == FaultReach::kCommand) {
            FailUsage(info, "this fault affects commands, not pings");
        }
        return std::string(kPingTopic);
    }
    const std::optional<Selection> selection = catalogue.Find(name);
    if (!selection) {
        throw CommandError("unknown kind '" + name + "'");
    }
    if (!Catalogue::IsRequestable(*selection)) {
        throw CommandError(selection->Name() + " is never requested; use its list " + selection->list->name);
    }
    if (info.reach == FaultReach::kPing) {
        FailUsage(info, "this fault affects pings, which have no kind");
    }
    return selection->Name();
}

/** Parses and removes `on KIND` and `for N` at the end, in either order. */
void ReadLimits(const Catalogue& catalogue, const FaultInfo& info, Words& words, Fault& fault) {
    for (int i = 0; i < 2; ++i) {
        if (const std::optional<std::string> count = fault.left ? std::nullopt : TakeTail(words, "for")) {
            fault.left = ParseUint32(*count);
            if (fault.left.value_or(0) == 0) {
                throw CommandError("'" + *count + "' is not a number of exchanges from 1");
            }
        }
        if (const std::optional<std::string> kind = fault.on.empty() ? TakeTail(words, "on") : std::nullopt) {
            if (info.reach == FaultReach::kConnection || info.reach == FaultReach::kSocket) {
                FailUsage(info, "this fault acts before a request is read, so it cannot depend on the kind");
            }
            fault.on = TopicNamed(catalogue, info, *kind);
        }
    }
    if (info.reach == FaultReach::kSocket && fault.left) {
        FailUsage(info, "this fault lasts until it is cleared");
    }
}

uint32_t ReadNumber(const FaultInfo& info, const std::string& text) {
    const std::optional<uint32_t> number = ParseUint32(text);
    if (!number || *number == 0 || *number > info.maximum) {
        FailUsage(info, "'" + text + "' is not a number from 1 to " + std::to_string(info.maximum));
    }
    return *number;
}

std::string ReadAttribute(const Catalogue& catalogue, const std::string& name) {
    for (const Kind& kind : catalogue.kinds()) {
        if (const std::optional<size_t> position = kind.FindAttribute(name)) {
            return kind.attributes[*position].name();
        }
    }
    throw CommandError("no kind has an attribute '" + name + "'");
}

/** Checks the number of words after the name. */
void CheckCount(const FaultInfo& info, const Words& words, size_t least, size_t most) {
    if (words.size() < 1 + least) {
        FailUsage(info, "missing argument");
    }
    if (words.size() > 1 + most) {
        FailUsage(info, "unexpected '" + words[1 + most] + "'");
    }
}

void ReadArguments(const Catalogue& catalogue, const FaultInfo& info, const Words& words, Fault& fault) {
    fault.number = info.number;
    switch (info.arguments) {
        case FaultArguments::kNone:
            CheckCount(info, words, 0, 0);
            break;
        case FaultArguments::kNumber:
            CheckCount(info, words, info.usage.starts_with('[') ? 0 : 1, 1);
            fault.number = words.size() > 1 ? ReadNumber(info, words[1]) : info.number;
            break;
        case FaultArguments::kText:
            fault.text = words.size() > 1 ? JoinWords(words, 1) : "Sideways";
            break;
        case FaultArguments::kAttribute:
            CheckCount(info, words, 1, 1);
            fault.name = ReadAttribute(catalogue, words[1]);
            break;
        case FaultArguments::kAttributeAndNumber:
            CheckCount(info, words, 1, 2);
            fault.name = ReadAttribute(catalogue, words[1]);
            fault.number = words.size() > 2 ? ReadNumber(info, words[2]) : info.number;
            break;
        case FaultArguments::kCodeAndText:
            CheckCount(info, words, 2, words.size());
            fault.name = words[1];
            fault.text = JoinWords(words, 2);
            break;
    }
}

std::string ArgumentsOf(const Fault& fault) {
    switch (fault.info->arguments) {
        case FaultArguments::kNone:
            return {};
        case FaultArguments::kNumber:
            return fault.number == 0 ? "" : " " + std::to_string(fault.number);
        case FaultArguments::kText:
            return " " + QuoteWord(fault.text);
        case FaultArguments::kAttribute:
            return " " + fault.name;
        case FaultArguments::kAttributeAndNumber:
            return " " + fault.name + " " + std::to_string(fault.number);
        case FaultArguments::kCodeAndText:
            return " " + fault.name + " " + QuoteWord(fault.text);
    }
    return {};
}

}  // namespace

Fault ParseFault(const Catalogue& catalogue, std::vector<std::string> words) {
    if (words.empty()) {
        throw CommandError("missing fault name; `help` prints all");
    }
    const FaultInfo& info = FaultNamed(words[0]);
    Fault fault;
    fault.info = &info;
    ReadLimits(catalogue, info, words, fault);
    ReadArguments(catalogue, info, words, fault);
    if (!IsUtf8(fault.name) || !IsUtf8(fault.text)) {
        throw CommandError("the string is not valid UTF-8");
    }
    return fault;
}

std::string FaultCommand(const Fault& fault) {
    return "fault " + std::string(fault.info->name) + ArgumentsOf(fault) +
           (fault.on.empty() ? "" : " on " + fault.on) +
           (fault.left ? " for " + std::to_string(*fault.left) : "");
}

}  // namespace arraysim
