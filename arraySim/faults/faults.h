#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "arraySim/model/catalogue.h"

namespace arraysim {

enum class FaultKind {
    kRefuse,
    kStopListening,
    kHang,
    kDelay,
    kTear,
    kLongLength,
    kHugeLength,
    kZeroLength,
    kGarbage,
    kWrongSequence,
    kWrongType,
    kNoResponse,
    kNoCommand,
    kPingFalse,
    kTruncated,
    kEmpty,
    kUnbalanced,
    kWrongRoot,
    kNoReturn,
    kNoSuccessful,
    kLowerTrue,
    kError,
    kTooMany,
    kNoObjects,
    kMissing,
    kUnknownStatus,
    kHugeText,
    kNoIndex,
    kNoParent,
    kNesting,
    kDoctype,
    kEntities,
    kExternalEntity
};

/** Which exchanges a fault can strike. */
enum class FaultReach {
    kConnection,  ///< before a request is read: knows no object
    kExchange,    ///< any
    kPing,        ///< pings
    kCommand      ///< commands
};

/** The arguments that a fault takes, besides `on KIND` and `for N`. */
enum class FaultArguments { kNone, kNumber, kText, kAttribute, kAttributeAndNumber, kCodeAndText };

/** A row of the table of faults. */
struct FaultInfo {
    FaultKind kind;
    std::string_view name;
    FaultReach reach;
    FaultArguments arguments;
    uint32_t number;         ///< taken when no number is given
    uint32_t greatest;       ///< the number may not be above
    std::string_view usage;  ///< the arguments as people write them
    std::string_view help;
};

std::span<const FaultInfo> FaultTable();
const FaultInfo& InfoOf(FaultKind kind);

/** One fault that is switched on. */
struct Fault {
    FaultKind kind = FaultKind::kHang;
    uint32_t number = 0;
    std::string name;              ///< attribute or error code
    std::string text;              ///< error text or status
    std::string on;                ///< object of the requests that it strikes; empty for all
    std::optional<uint32_t> left;  ///< exchanges that it still strikes; none for no end
};

/** The object name behind `on` for faults that strike pings. */
inline constexpr std::string_view kPingTopic = "Ping";

/** The faults that are switched on, in the order in which they were. Not guarded by itself. */
class FaultList {
  public:
    void Add(const Fault& fault);
    /** All, or those of a name; returns how many went. */
    size_t Clear(std::string_view name);

    bool Listening() const;
    /** Whether a connection that just came is closed at once; counts it. */
    bool TakeRefusal();
    /** The faults that strike an exchange, counted. topic: the object asked for, or kPingTopic. */
    std::vector<Fault> TakeFor(std::string_view topic);

    /** A line for each, as the command that would switch it on again. */
    std::string Describe() const;

  private:
    void DropSpent();

    std::vector<Fault> faults_;
};

}  // namespace arraysim
