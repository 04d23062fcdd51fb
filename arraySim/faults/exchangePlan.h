#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "arraySim/faults/documentBend.h"
#include "arraySim/faults/faults.h"
#include "arraySim/protocol/answers.h"

namespace arraysim {

/** How the envelope is bent. */
struct EnvelopeBend {
    bool wrong_sequence = false;
    bool wrong_type = false;
    bool no_response = false;
    bool no_command = false;
    bool ping_false = false;
};

/** How the frame is sent. */
struct Delivery {
    enum class Length { kHonest, kLong, kHuge, kZero };

    uint32_t delay_ms = 0;
    bool hang = false;
    std::optional<uint32_t> tear_after;  ///< bytes; 0: half of the frame
    Length length = Length::kHonest;
    bool garbage = false;
};

/** All that the faults do to one exchange. */
struct ExchangePlan {
    ObjectStyle style;
    ListBend list;
    DocumentBend document;
    EnvelopeBend envelope;
    Delivery delivery;
    std::string faults;  ///< their names, for the trace
};

ExchangePlan PlanFor(const std::vector<Fault>& faults);

}  // namespace arraysim
