#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "arraySim/faults/delivery.h"
#include "arraySim/faults/responseAlteration.h"
#include "arraySim/protocol/answer.h"
#include "arraySim/protocol/apiRequest.h"

namespace arraysim {

/** Everything that the faults do to one exchange. */
struct ExchangePlan {
    ObjectStyle style;
    ListAlteration list;
    DocumentAlteration document;
    EnvelopeAlteration envelope;
    Delivery delivery;
    std::string faults;  ///< their names, for the trace
};

/** What a fault strikes. */
enum class FaultReach {
    kSocket,      ///< the socket, until it is cleared
    kConnection,  ///< connections, before a request is read
    kExchange,    ///< any exchange
    kPing,        ///< pings
    kCommand      ///< commands
};

/** The arguments that a fault takes, besides `on KIND` and `for N`. */
enum class FaultArguments { kNone, kNumber, kText, kAttribute, kAttributeAndNumber, kCodeAndText };

struct Fault;

/** A row of the table of faults. */
struct FaultInfo {
    std::string_view name;
    FaultReach reach;
    std::string_view usage;  ///< the arguments as a user writes them
    std::string_view help;
    void (*apply)(const Fault& fault, ExchangePlan& plan);  ///< null for a fault that strikes no exchange
    FaultArguments arguments = FaultArguments::kNone;
    uint32_t number = 0;    ///< if no number is given
    uint32_t greatest = 0;  ///< maximum of the number
};

std::span<const FaultInfo> FaultTable();

/** One fault that is switched on. */
struct Fault {
    const FaultInfo* info = nullptr;  ///< never null for a fault in a list
    uint32_t number = 0;
    std::string name;              ///< attribute or error code
    std::string text;              ///< error text or status
    std::string on;                ///< object of the requests that it strikes; empty for all
    std::optional<uint32_t> left;  ///< exchanges that it still strikes; none for no end
};

/** The faults that are switched on, in the order in which they were. Not guarded by itself. */
class FaultList {
  public:
    void Add(const Fault& fault);
    /** Clears all, or those of a name; returns how many. */
    size_t Clear(std::string_view name);

    bool Listening() const;
    /** Whether a new connection must be closed immediately; counts it. */
    bool TakeRefusal();
    /** The faults that strike an exchange, counted. topic: the object asked for, or kPingTopic. */
    std::vector<Fault> TakeFor(std::string_view topic);

    const std::vector<Fault>& faults() const { return faults_; }

  private:
    void DropSpent();

    std::vector<Fault> faults_;
};

ExchangePlan PlanFor(const std::vector<Fault>& faults);

}  // namespace arraysim
