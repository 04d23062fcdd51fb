#include "arraySim/faults/faults.h"

#include <algorithm>

namespace arraysim {

namespace {

constexpr uint32_t kHour_ms = 3600000;
constexpr uint32_t kMaximumTextSize = 64 * 1024 * 1024;

using enum FaultReach;
using enum FaultArguments;
using F = const Fault&;
using P = ExchangePlan&;

constexpr FaultInfo kTable[] = {
    {"refuse", kConnection, "", "close each connection immediately", nullptr},
    {"stop-listening", kSocket, "", "close and remove the socket; `clear stop-listening` restores it",
     nullptr},
    {"hang", kExchange, "", "never respond; ends when the peer closes",
     [](F, P p) { p.delivery.hang = true; }},
    {"delay", kExchange, "MS", "delay the response by MS milliseconds",
     [](F f, P p) { p.delivery.delay_ms = f.number; }, kNumber, 0, kHour_ms},
    {"tear", kExchange, "[BYTES]", "close after BYTES bytes of the frame; default: half of it",
     [](F f, P p) { p.delivery.tear_after = f.number; }, kNumber, 0, kMaximumTextSize},
    {"long-length", kExchange, "", "announce a longer frame than is sent, then close",
     [](F, P p) { p.delivery.length = Delivery::Length::kLong; }},
    {"huge-length", kExchange, "", "announce a body longer than the maximum, then close",
     [](F, P p) { p.delivery.length = Delivery::Length::kHuge; }},
    {"zero-length", kExchange, "", "send a frame of length zero, then close",
     [](F, P p) { p.delivery.length = Delivery::Length::kZero; }},
    {"garbage", kExchange, "", "send a body that is not a protobuf message",
     [](F, P p) { p.delivery.garbage = true; }},
    {"wrong-sequence", kExchange, "", "respond with a wrong sequence number",
     [](F, P p) { p.envelope.wrong_sequence = true; }},
    {"wrong-type", kExchange, "", "respond with a msgType other than APIResp",
     [](F, P p) { p.envelope.wrong_type = true; }},
    {"no-response", kExchange, "", "omit apiRespMsg from the envelope",
     [](F, P p) { p.envelope.no_response = true; }},
    {"no-cmd", kCommand, "", "omit cmd from apiRespMsg", [](F, P p) { p.envelope.no_command = true; }},
    {"ping-false", kPing, "", "answer pings with false", [](F, P p) { p.envelope.ping_false = true; }},
    {"truncated", kCommand, "", "send only the first half of the document",
     [](F, P p) { p.document.truncated = true; }},
    {"empty", kCommand, "", "send an empty document", [](F, P p) { p.document.empty = true; }},
    {"unbalanced", kCommand, "", "add an element without an end tag",
     [](F, P p) { p.document.unbalanced = true; }},
    {"wrong-root", kCommand, "", "use a document element other than lumapi",
     [](F, P p) { p.document.wrong_root = true; }},
    {"no-return", kCommand, "", "omit ApiMethodReturn from the document",
     [](F, P p) { p.document.no_return = true; }},
    {"no-successful", kCommand, "", "omit Successful from ApiMethodReturn",
     [](F, P p) { p.document.no_successful = true; }},
    {"lower-true", kCommand, "", "write the value of Successful in lower case",
     [](F, P p) { p.document.lower_true = true; }},
    {"error", kCommand, "CODE TEXT", "reject the command with this code and message",
     [](F f, P p) {
         p.document.error = {f.name, f.text};
     },
     kCodeAndText},
    {"too-many", kCommand, "[N]", "exceed the table's capacity by N objects; default: 1",
     [](F f, P p) { p.list.beyond_capacity = f.number; }, kNumber, 1, 100000},
    {"no-objects", kCommand, "", "respond with an empty list", [](F, P p) { p.list.no_objects = true; }},
    {"missing", kCommand, "ATTR", "omit this attribute from all objects",
     [](F f, P p) { p.style.omitted.push_back(f.name); }, kAttribute},
    {"unknown-status", kCommand, "[TEXT]", "replace the Status of all objects; default: Sideways",
     [](F f, P p) { p.style.replaced.emplace_back("Status", f.text); }, kText},
    {"huge-text", kCommand, "ATTR [BYTES]", "give the first object a value of BYTES bytes; default: 1000000",
     [](F f, P p) { p.list.replaced_in_first.emplace_back(f.name, std::string(f.number, 'x')); },
     kAttributeAndNumber, 1000000, kMaximumTextSize},
    {"no-index", kCommand, "", "omit the API index from all objects",
     [](F, P p) {
         p.style.omitted.insert(p.style.omitted.end(), {"Index", "DiskIndex"});
     }},
    {"no-parent", kCommand, "", "omit ControllerIndex and EnclosureIndex from all objects",
     [](F, P p) {
         p.style.omitted.insert(p.style.omitted.end(), {"ControllerIndex", "EnclosureIndex"});
     }},
    {"nesting", kCommand, "[LEVELS]", "nest elements LEVELS deep; default: 100000",
     [](F f, P p) { p.document.nesting = f.number; }, kNumber, 100000, 5000000},
    {"doctype", kCommand, "", "add a document type declaration", [](F, P p) { p.document.doctype = true; }},
    {"entities", kCommand, "", "add entities that expand exponentially",
     [](F, P p) { p.document.entities = true; }},
    {"external-entity", kCommand, "", "add an entity that names a file on the reader's machine",
     [](F, P p) { p.document.external_entity = true; }},
};

bool Affects(const Fault& fault, std::string_view topic) {
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
            RemoveExpired();
            return true;
        }
    }
    return false;
}

std::vector<Fault> FaultList::TakeFor(std::string_view topic) {
    std::vector<Fault> taken;
    for (Fault& fault : faults_) {
        if (Affects(fault, topic)) {
            Count(fault);
            taken.push_back(fault);
        }
    }
    RemoveExpired();
    return taken;
}

void FaultList::RemoveExpired() {
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
