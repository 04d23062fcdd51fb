#include "arraySim/faults/exchangePlan.h"

namespace arraysim {

namespace {

void Apply(const Fault& fault, ExchangePlan& plan) {
    switch (fault.kind) {
        case FaultKind::kRefuse:
        case FaultKind::kStopListening:
            break;  // these act on connections
        case FaultKind::kHang:
            plan.delivery.hang = true;
            break;
        case FaultKind::kDelay:
            plan.delivery.delay_ms = fault.number;
            break;
        case FaultKind::kTear:
            plan.delivery.tear_after = fault.number;
            break;
        case FaultKind::kLongLength:
            plan.delivery.length = Delivery::Length::kLong;
            break;
        case FaultKind::kHugeLength:
            plan.delivery.length = Delivery::Length::kHuge;
            break;
        case FaultKind::kZeroLength:
            plan.delivery.length = Delivery::Length::kZero;
            break;
        case FaultKind::kGarbage:
            plan.delivery.garbage = true;
            break;
        case FaultKind::kWrongSequence:
            plan.envelope.wrong_sequence = true;
            break;
        case FaultKind::kWrongType:
            plan.envelope.wrong_type = true;
            break;
        case FaultKind::kNoResponse:
            plan.envelope.no_response = true;
            break;
        case FaultKind::kNoCommand:
            plan.envelope.no_command = true;
            break;
        case FaultKind::kPingFalse:
            plan.envelope.ping_false = true;
            break;
        case FaultKind::kTruncated:
            plan.document.truncated = true;
            break;
        case FaultKind::kEmpty:
            plan.document.empty = true;
            break;
        case FaultKind::kUnbalanced:
            plan.document.unbalanced = true;
            break;
        case FaultKind::kWrongRoot:
            plan.document.wrong_root = true;
            break;
        case FaultKind::kNoReturn:
            plan.document.no_return = true;
            break;
        case FaultKind::kNoSuccessful:
            plan.document.no_successful = true;
            break;
        case FaultKind::kLowerTrue:
            plan.document.lower_true = true;
            break;
        case FaultKind::kError:
            plan.document.error = {fault.name, fault.text};
            break;
        case FaultKind::kTooMany:
            plan.list.beyond_capacity = fault.number;
            break;
        case FaultKind::kNoObjects:
            plan.list.no_objects = true;
            break;
        case FaultKind::kMissing:
            plan.style.omitted.push_back(fault.name);
            break;
        case FaultKind::kUnknownStatus:
            plan.style.replaced.emplace_back("Status", fault.text);
            break;
        case FaultKind::kHugeText:
            plan.list.replaced_in_first.emplace_back(fault.name, std::string(fault.number, 'x'));
            break;
        case FaultKind::kNoIndex:
            plan.style.omitted.insert(plan.style.omitted.end(), {"Index", "DiskIndex"});
            break;
        case FaultKind::kNoParent:
            plan.style.omitted.insert(plan.style.omitted.end(), {"ControllerIndex", "EnclosureIndex"});
            break;
        case FaultKind::kNesting:
            plan.document.nesting = fault.number;
            break;
        case FaultKind::kDoctype:
            plan.document.doctype = true;
            break;
        case FaultKind::kEntities:
            plan.document.entities = true;
            break;
        case FaultKind::kExternalEntity:
            plan.document.external_entity = true;
            break;
    }
}

}  // namespace

ExchangePlan PlanFor(const std::vector<Fault>& faults) {
    ExchangePlan plan;
    for (const Fault& fault : faults) {
        Apply(fault, plan);
        plan.faults += (plan.faults.empty() ? "" : ",") + std::string(InfoOf(fault.kind).name);
    }
    return plan;
}

}  // namespace arraysim
