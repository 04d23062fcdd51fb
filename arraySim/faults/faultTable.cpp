#include <iterator>

#include "arraySim/faults/faults.h"

namespace arraysim {

namespace {

constexpr FaultReach kConnection = FaultReach::kConnection;
constexpr FaultReach kExchange = FaultReach::kExchange;
constexpr FaultReach kPing = FaultReach::kPing;
constexpr FaultReach kCommand = FaultReach::kCommand;

constexpr FaultArguments kNone = FaultArguments::kNone;
constexpr FaultArguments kNumber = FaultArguments::kNumber;
constexpr FaultArguments kText = FaultArguments::kText;

constexpr uint32_t kHour_ms = 3600000;
constexpr uint32_t kGreatestText = 64 * 1024 * 1024;

// clang-format off
constexpr FaultInfo kTable[] = {
    {FaultKind::kRefuse,         "refuse",          kConnection, kNone,   0, 0, "",       "close each connection as soon as it is accepted"},
    {FaultKind::kStopListening,  "stop-listening",  kConnection, kNone,   0, 0, "",       "close and remove the socket; `clear stop-listening` brings it back"},
    {FaultKind::kHang,           "hang",            kExchange,   kNone,   0, 0, "",       "never answer; ends when the peer closes"},
    {FaultKind::kDelay,          "delay",           kExchange,   kNumber, 0, kHour_ms, "MS", "answer so many milliseconds later"},
    {FaultKind::kTear,           "tear",            kExchange,   kNumber, 0, kGreatestText, "[BYTES]", "close after so many bytes of the frame; half of it unless told"},
    {FaultKind::kLongLength,     "long-length",     kExchange,   kNone,   0, 0, "",       "the frame's length says more than follows, then close"},
    {FaultKind::kHugeLength,     "huge-length",     kExchange,   kNone,   0, 0, "",       "the frame's length is beyond the greatest body"},
    {FaultKind::kZeroLength,     "zero-length",     kExchange,   kNone,   0, 0, "",       "a frame of length zero"},
    {FaultKind::kGarbage,        "garbage",         kExchange,   kNone,   0, 0, "",       "a body that is no protobuf message"},
    {FaultKind::kWrongSequence,  "wrong-sequence",  kExchange,   kNone,   0, 0, "",       "another sequence number than the request's"},
    {FaultKind::kWrongType,      "wrong-type",      kExchange,   kNone,   0, 0, "",       "a msgType other than APIResp"},
    {FaultKind::kNoResponse,     "no-response",     kExchange,   kNone,   0, 0, "",       "an envelope without apiRespMsg"},
    {FaultKind::kNoCommand,      "no-cmd",          kCommand,    kNone,   0, 0, "",       "an apiRespMsg without cmd"},
    {FaultKind::kPingFalse,      "ping-false",      kPing,       kNone,   0, 0, "",       "pings are answered with false"},
    {FaultKind::kTruncated,      "truncated",       kCommand,    kNone,   0, 0, "",       "the first half of the document"},
    {FaultKind::kEmpty,          "empty",           kCommand,    kNone,   0, 0, "",       "a document without a character"},
    {FaultKind::kUnbalanced,     "unbalanced",      kCommand,    kNone,   0, 0, "",       "an element that is never closed"},
    {FaultKind::kWrongRoot,      "wrong-root",      kCommand,    kNone,   0, 0, "",       "a document element other than lumapi"},
    {FaultKind::kNoReturn,       "no-return",       kCommand,    kNone,   0, 0, "",       "a document without ApiMethodReturn"},
    {FaultKind::kNoSuccessful,   "no-successful",   kCommand,    kNone,   0, 0, "",       "an ApiMethodReturn without Successful"},
    {FaultKind::kLowerTrue,      "lower-true",      kCommand,    kNone,   0, 0, "",       "Successful in lower case"},
    {FaultKind::kError,          "error",           kCommand,    FaultArguments::kCodeAndText, 0, 0, "CODE TEXT", "a failure with this code and text; nothing is carried out"},
    {FaultKind::kTooMany,        "too-many",        kCommand,    kNumber, 1, 100000, "[N]", "so many objects more than the table takes, 1 unless told"},
    {FaultKind::kNoObjects,      "no-objects",      kCommand,    kNone,   0, 0, "",       "an empty list"},
    {FaultKind::kMissing,        "missing",         kCommand,    FaultArguments::kAttribute, 0, 0, "ATTR", "objects without this attribute"},
    {FaultKind::kUnknownStatus,  "unknown-status",  kCommand,    kText,   0, 0, "[TEXT]", "objects with this Status, Sideways unless told"},
    {FaultKind::kHugeText,       "huge-text",       kCommand,    FaultArguments::kAttributeAndNumber, 1000000, kGreatestText, "ATTR [BYTES]", "so long a value in the first object, 1000000 unless told"},
    {FaultKind::kNoIndex,        "no-index",        kCommand,    kNone,   0, 0, "",       "objects without their API index"},
    {FaultKind::kNoParent,       "no-parent",       kCommand,    kNone,   0, 0, "",       "objects without ControllerIndex and EnclosureIndex"},
    {FaultKind::kNesting,        "nesting",         kCommand,    kNumber, 100000, 5000000, "[LEVELS]", "elements nested so deep, 100000 unless told"},
    {FaultKind::kDoctype,        "doctype",         kCommand,    kNone,   0, 0, "",       "a document type declaration"},
    {FaultKind::kEntities,       "entities",        kCommand,    kNone,   0, 0, "",       "entities that expand without measure"},
    {FaultKind::kExternalEntity, "external-entity", kCommand,    kNone,   0, 0, "",       "an entity that names a file of the reader"},
};
// clang-format on

constexpr bool IsInOrder() {
    for (size_t i = 0; i < std::size(kTable); ++i) {
        if (kTable[i].kind != static_cast<FaultKind>(i)) {
            return false;
        }
    }
    return true;
}
static_assert(IsInOrder(), "InfoOf finds a row by its number");

}  // namespace

std::span<const FaultInfo> FaultTable() {
    return kTable;
}

const FaultInfo& InfoOf(FaultKind kind) {
    return kTable[static_cast<size_t>(kind)];
}

}  // namespace arraysim
