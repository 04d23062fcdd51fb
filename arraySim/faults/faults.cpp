#include "arraySim/faults/faults.h"

#include <algorithm>

#include "arraySim/control/words.h"

namespace arraysim {

namespace {

bool Strikes(const Fault& fault, std::string_view topic) {
    const FaultReach reach = InfoOf(fault.kind).reach;
    const bool is_ping = topic == kPingTopic;
    if (reach == FaultReach::kConnection || (reach == FaultReach::kPing && !is_ping) ||
        (reach == FaultReach::kCommand && is_ping)) {
        return false;
    }
    return fault.on.empty() || fault.on == topic;
}

void Count(Fault& fault) {
    if (fault.left) {
        --*fault.left;
    }
}

std::string ArgumentsOf(const Fault& fault) {
    switch (InfoOf(fault.kind).arguments) {
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

void FaultList::Add(const Fault& fault) {
    faults_.push_back(fault);
}

size_t FaultList::Clear(std::string_view name) {
    return std::erase_if(faults_,
                         [&](const Fault& fault) { return name.empty() || InfoOf(fault.kind).name == name; });
}

bool FaultList::Listening() const {
    return std::none_of(faults_.begin(), faults_.end(),
                        [](const Fault& fault) { return fault.kind == FaultKind::kStopListening; });
}

bool FaultList::TakeRefusal() {
    for (Fault& fault : faults_) {
        if (fault.kind == FaultKind::kRefuse) {
            Count(fault);
            DropSpent();
            return true;
        }
    }
    return false;
}

std::vector<Fault> FaultList::TakeFor(std::string_view topic) {
    std::vector<Fault> taken;
    for (Fault& fault : faults_) {
        if (Strikes(fault, topic)) {
            Count(fault);
            taken.push_back(fault);
        }
    }
    DropSpent();
    return taken;
}

void FaultList::DropSpent() {
    std::erase_if(faults_, [](const Fault& fault) { return fault.left == 0u; });
}

std::string FaultList::Describe() const {
    std::string text;
    for (const Fault& fault : faults_) {
        text += "fault " + std::string(InfoOf(fault.kind).name) + ArgumentsOf(fault);
        text += fault.on.empty() ? "" : " on " + fault.on;
        text += fault.left ? " for " + std::to_string(*fault.left) : "";
        text += '\n';
    }
    return text;
}

}  // namespace arraysim
