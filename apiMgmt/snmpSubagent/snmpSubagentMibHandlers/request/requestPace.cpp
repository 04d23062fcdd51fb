#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/requestPace.h"

#include <array>
#include <deque>
#include <string_view>

#include "apiMgmt/common/platform/clock.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

int64_t next_pdu_slot_ms = 0;

namespace {

constexpr int64_t kPduSlot_ms = 2;
constexpr int64_t kBurst_ms = 1000;
// If PDUs exceed the pace, every fourth sleeps for all four, because a sleep costs two context switches and
// the contents of the caches.
constexpr int64_t kSleep_ms = 4 * kPduSlot_ms;

// Managers that wait for each response have few requests pending, however fast they walk. More than
// kFewRequests for kOverloadDelay_ms are an overload. So are, immediately, as many requests as take two
// seconds at the pace, or requests that take too much of snmpd's memory, which needs about fifty octets per
// octet of a request. An overload ends when nothing was rejected for kOverloadEnd_ms.
constexpr size_t kFewRequests = 50;
constexpr int64_t kOverloadDelay_ms = 5000;
constexpr size_t kMaximumRequests = 1000;
constexpr size_t kMaximumOctets = 256 * 1024;
constexpr int64_t kOverloadEnd_ms = 2000;

// In an overload, a small request is served if its first name was not requested within this time.
constexpr size_t kSmallOctets = 1024;
constexpr int64_t kRepeatInterval_ms = 250;

std::deque<size_t> waiting_requests;  // sizes, oldest first
size_t waiting_octets = 0;

struct overload {
    int64_t begin_ms = 0;  // since when many requests have been waiting; 0: they are not
    bool is_shed = false;
    int64_t last_rejected_ms = 0;
    uint64_t rejected = 0;
};
overload current;

// Removes the request that is being served and returns its size.
size_t take_oldest_request() {
    if (waiting_requests.empty())
        return 0;
    const size_t octets = waiting_requests.front();
    waiting_octets -= octets;
    waiting_requests.pop_front();
    return octets;
}

void begin_overload_if_due(int64_t now_ms) {
    if (waiting_requests.size() <= kFewRequests) {
        current.begin_ms = 0;
        return;
    }
    if (current.begin_ms == 0)
        current.begin_ms = now_ms;
    if (now_ms - current.begin_ms < kOverloadDelay_ms && waiting_requests.size() <= kMaximumRequests &&
        waiting_octets <= kMaximumOctets)
        return;
    current.is_shed = true;
    current.last_rejected_ms = now_ms;
    SUBAGENT_LOG(warning, "overload: %zu requests of %zu octets wait; rejecting those that exceed the pace\n",
                 waiting_requests.size(), waiting_octets);
}

void end_overload_if_due(int64_t now_ms) {
    if (now_ms - current.last_rejected_ms < kOverloadEnd_ms)
        return;
    SUBAGENT_LOG(warning, "overload is over: rejected %llu requests\n",
                 static_cast<unsigned long long>(current.rejected));
    current = {};
}

// Returns whether the name was requested recently. Names share slots, so a few are mistaken for others.
bool is_repeated(const netsnmp_variable_list* binding, int64_t now_ms) {
    static std::array<int64_t, 4096> last_asked_ms{};
    const std::string_view name(reinterpret_cast<const char*>(binding->name),
                                binding->name_length * sizeof(oid));
    int64_t& last_ms = last_asked_ms[std::hash<std::string_view>{}(name) % last_asked_ms.size()];
    const bool is_repetition = now_ms - last_ms < kRepeatInterval_ms;
    if (!is_repetition)
        last_ms = now_ms;
    return is_repetition;
}

bool exceeds_pace(int64_t now_ms) {
    return next_pdu_slot_ms + kPduSlot_ms > now_ms + kBurst_ms;
}

}  // namespace

void note_request_arrived(size_t octets) {
    waiting_requests.push_back(octets);
    waiting_octets += octets;
}

void note_no_request_waits() {
    waiting_requests.clear();
    waiting_octets = 0;
}

bool keep_request_pace(const netsnmp_variable_list* first_binding) {
    const int64_t now_ms = ClockNowMs();
    if (current.is_shed)
        end_overload_if_due(now_ms);
    else
        begin_overload_if_due(now_ms);
    const size_t octets = take_oldest_request();
    // Requests can pile up without exceeding the pace if the daemon gets too little processor time.
    if (current.is_shed && (exceeds_pace(now_ms) || waiting_requests.size() > kFewRequests)) {
        if (octets <= kSmallOctets && !is_repeated(first_binding, now_ms))
            return true;
        current.last_rejected_ms = now_ms;
        ++current.rejected;
        return false;
    }
    pace_pdu_processing();
    return true;
}

void pace_pdu_processing() {
    const int64_t now_ms = ClockNowMs();
    const int64_t slot_ms = next_pdu_slot_ms + kPduSlot_ms;
    if (now_ms > slot_ms) {
        next_pdu_slot_ms = now_ms + kPduSlot_ms;
        return;
    }
    if (slot_ms >= now_ms + kBurst_ms + kSleep_ms)
        ClockSleepMicroseconds(kSleep_ms * kMillisecondUs);
    next_pdu_slot_ms = slot_ms;
}
