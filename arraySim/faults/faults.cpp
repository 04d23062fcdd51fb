#include "arraySim/faults/faults.h"

#include <algorithm>

namespace arraysim {

namespace {

constexpr uint32_t kHour_ms = 3600000;
constexpr uint32_t kGreatestText = 64 * 1024 * 1024;

using enum FaultReach;
using enum FaultArguments;
using F = const Fault&;
using P = ExchangePlan&;

constexpr FaultInfo kTable[] = {
    {"refuse", kConnection, "", "close each connection as soon as it is accepted", nullptr},
    {"stop-listening", kSocket, "", "close and remove the socket; `clear stop-listening` brings it back",
     nullptr},
    {"hang", kExchange, "", "never answer; ends when the peer closes",
     [](F, P p) { p.delivery.hang = true; }},
    {"delay", kExchange, "MS", "answer so many milliseconds later",
     [](F f, P p) { p.delivery.delay_ms = f.number; }, kNumber, 0, kHour_ms},
    {"tear", kExchange, "[BYTES]", "close after so many bytes of the frame; half of it unless told",
     [](F f, P p) { p.delivery.tear_after = f.number; }, kNumber, 0, kGreatestText},
    {"long-length", kExchange, "", "the frame's length says more than follows, then close",
     [](F, P p) { p.delivery.length = Delivery::Length::kLong; }},
    {"huge-length", kExchange, "", "the frame's length is beyond the greatest body",
     [](F, P p) { p.delivery.length = Delivery::Length::kHuge; }},
    {"zero-length", kExchange, "", "a frame of length zero",
     [](F, P p) { p.delivery.length = Delivery::Length::kZero; }},
    {"garbage", kExchange, "", "a body that is no protobuf message",
     [](F, P p) { p.delivery.garbage = true; }},
    {"wrong-sequence", kExchange, "", "another sequence number than the request's",
     [](F, P p) { p.envelope.wrong_sequence = true; }},
    {"wrong-type", kExchange, "", "a msgType other than APIResp",
     [](F, P p) { p.envelope.wrong_type = true; }},
    {"no-response", kExchange, "", "an envelope without apiRespMsg",
     [](F, P p) { p.envelope.no_response = true; }},
    {"no-cmd", kCommand, "", "an apiRespMsg without cmd", [](F, P p) { p.envelope.no_command = true; }},
    {"ping-false", kPing, "", "pings are answered with false", [](F, P p) { p.envelope.ping_false = true; }},
    {"truncated", kCommand, "", "the first half of the document",
     [](F, P p) { p.document.truncated = true; }},
    {"empty", kCommand, "", "a document without a character", [](F, P p) { p.document.empty = true; }},
    {"unbalanced", kCommand, "", "an element that is never closed",
     [](F, P p) { p.document.unbalanced = true; }},
    {"wrong-root", kCommand, "", "a document element other than lumapi",
     [](F, P p) { p.document.wrong_root = true; }},
    {"no-return", kCommand, "", "a document without ApiMethodReturn",
     [](F, P p) { p.document.no_return = true; }},
    {"no-successful", kCommand, "", "an ApiMethodReturn without Successful",
     [](F, P p) { p.document.no_successful = true; }},
    {"lower-true", kCommand, "", "Successful in lower case", [](F, P p) { p.document.lower_true = true; }},
    {"error", kCommand, "CODE TEXT", "a failure with this code and text; nothing is carried out",
     [](F f, P p) {
         p.document.error = {f.name, f.text};
     },
     kCodeAndText},
    {"too-many", kCommand, "[N]", "so many objects more than the table takes, 1 unless told",
     [](F f, P p) { p.list.beyond_capacity = f.number; }, kNumber, 1, 100000},
    {"no-objects", kCommand, "", "an empty list", [](F, P p) { p.list.no_objects = true; }},
    {"missing", kCommand, "ATTR", "objects without this attribute",
     [](F f, P p) { p.style.omitted.push_back(f.name); }, kAttribute},
    {"unknown-status", kCommand, "[TEXT]", "objects with this Status, Sideways unless told",
     [](F f, P p) { p.style.replaced.emplace_back("Status", f.text); }, kText},
    {"huge-text", kCommand, "ATTR [BYTES]", "so long a value in the first object, 1000000 unless told",
     [](F f, P p) { p.list.replaced_in_first.emplace_back(f.name, std::string(f.number, 'x')); },
     kAttributeAndNumber, 1000000, kGreatestText},
    {"no-index", kCommand, "", "objects without their API index",
     [](F, P p) {
         p.style.omitted.insert(p.style.omitted.end(), {"Index", "DiskIndex"});
     }},
    {"no-parent", kCommand, "", "objects without ControllerIndex and EnclosureIndex",
     [](F, P p) {
         p.style.omitted.insert(p.style.omitted.end(), {"ControllerIndex", "EnclosureIndex"});
     }},
    {"nesting", kCommand, "[LEVELS]", "elements nested so deep, 100000 unless told",
     [](F f, P p) { p.document.nesting = f.number; }, kNumber, 100000, 5000000},
    {"doctype", kCommand, "", "a document type declaration", [](F, P p) { p.document.doctype = true; }},
    {"entities", kCommand, "", "entities that expand without measure",
     [](F, P p) { p.document.entities = true; }},
    {"external-entity", kCommand, "", "an entity that names a file of the reader",
     [](F, P p) { p.document.external_entity = true; }},
};

bool Strikes(const Fault& fault, std::string_view topic) {
    const FaultReach reach = fault.info->reach;
    const bool is_ping = topic == kPingTopic;
    if (reach == kSocket || reach == kConnection || (reach == kPing && !is_ping) ||
        (reach == kCommand && is_ping)) {
        return false;
    }
    return fault.on.empty() || fault.on == topic;
}

void Count(Fault& fault) {
    if (fault.left) {
        --*fault.left;
    }
}

}  // namespace

void FaultList::Add(const Fault& fault) {
    faults_.push_back(fault);
}

size_t FaultList::Clear(std::string_view name) {
    return std::erase_if(faults_,
                         [&](const Fault& fault) { return name.empty() || fault.info->name == name; });
}

bool FaultList::Listening() const {
    return std::none_of(faults_.begin(), faults_.end(),
                        [](const Fault& fault) { return fault.info->reach == kSocket; });
}

bool FaultList::TakeRefusal() {
    for (Fault& fault : faults_) {
        if (fault.info->reach == kConnection) {
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

std::span<const FaultInfo> FaultTable() {
    return kTable;
}

ExchangePlan PlanFor(const std::vector<Fault>& faults) {
    ExchangePlan plan;
    for (const Fault& fault : faults) {
        if (fault.info->apply != nullptr) {
            fault.info->apply(fault, plan);
        }
        plan.faults += (plan.faults.empty() ? "" : ",") + std::string(fault.info->name);
    }
    return plan;
}

}  // namespace arraysim
