#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "arraySim/faults/delivery.h"
#include "arraySim/faults/responseAlteration.h"
#include "arraySim/protocol/apiRequest.h"
#include "arraySim/protocol/response.h"

namespace arraysim {

/** All effects of the faults on one exchange. */
struct ExchangePlan {
    ObjectStyle style;
    ListAlteration list;
    DocumentAlteration document;
    EnvelopeAlteration envelope;
    Delivery delivery;
    std::string faults;  ///< names, for the trace
};

/** The target of a fault. */
enum class FaultReach {
    kSocket,      ///< the socket, until the fault is cleared
    kConnection,  ///< connections, before a request is read
    kExchange,    ///< any exchange
    kPing,        ///< pings
    kCommand      ///< commands
};

/** The arguments of a fault, other than `on KIND` and `for N`. */
enum class FaultArguments { kNone, kNumber, kText, kAttribute, kAttributeAndNumber, kCodeAndText };

struct Fault;

/** A row of the table of faults. */
struct FaultInfo {
    std::string_view name;
    FaultReach reach;
    std::string_view usage;  ///< the arguments, as `help` shows them
    std::string_view help;
    void (*apply)(const Fault& fault, ExchangePlan& plan);  ///< null for a fault that affects no exchange
    FaultArguments arguments = FaultArguments::kNone;
    uint32_t number = 0;   ///< default of the number
    uint32_t maximum = 0;  ///< maximum of the number
};

std::span<const FaultInfo> FaultTable();

/** An active fault. */
struct Fault {
    const FaultInfo* info = nullptr;  ///< never null in a FaultList
    uint32_t number = 0;
    std::string name;              ///< attribute or error code
    std::string text;              ///< error text or status
    std::string on;                ///< object of the affected requests; empty: all
    std::optional<uint32_t> left;  ///< exchanges that it will still affect; none: no limit
};

/** The active faults, oldest first. Not thread-safe. */
class FaultList {
  public:
    void Add(const Fault& fault);
    /** Removes the faults of that name, or all if it is empty. Returns their number. */
    size_t Clear(std::string_view name);

    /** Returns whether the socket must exist. */
    bool Listening() const;
    /** Returns whether a new connection must be closed immediately, and counts that. */
    bool TakeRefusal();
    /** Returns and counts the faults that affect an exchange. topic: the requested object, or kPingTopic. */
    std::vector<Fault> TakeFor(std::string_view topic);

    const std::vector<Fault>& faults() const { return faults_; }

  private:
    void RemoveExpired();

    std::vector<Fault> faults_;
};

ExchangePlan PlanFor(const std::vector<Fault>& faults);

}  // namespace arraysim
