#include "arraySim/control/trace.h"

#include <algorithm>
#include <ctime>

#include "apiMgmt/common/platform/clock.h"
#include "apiMgmt/common/utils/stringUtil.h"

namespace arraysim {

namespace {

constexpr const char* kLegend =
    "# time      wall clock                     lite     1 if reduced objects were requested\n"
    "# conn      number of the connection       objects  number of objects in the response\n"
    "# seq       sequence number of the request bytes    bytes of the frame that were sent\n"
    "# command   GetList, Get, Modify, Ping     ms       between the last bytes of request and response\n"
    "# object    as named in the request        outcome  ok or the error code, then the injected faults\n"
    "# event     delivered, dropped (timeout) or overflow (too many waiting); ms that it waited; its text\n";

std::string TimeOfDay() {
    const timeval now = ClockNow();
    const time_t seconds = now.tv_sec;
    tm parts{};
    localtime_r(&seconds, &parts);
    return FormatString("%02d:%02d:%02d.%03d", parts.tm_hour, parts.tm_min, parts.tm_sec,
                        static_cast<int>(now.tv_usec / 1000));
}

/** Replaces control characters, because a peer's string may contain line feeds. */
std::string OneLine(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](unsigned char c) { return c < 32 || c == 127; }, ' ');
    return text;
}

}  // namespace

std::string Trace::Columns(const ServedExchange& exchange) {
    const ExchangeRecord& record = exchange.record;
    return FormatString("%6u %8u  %-8s %-29s %4d %7zu %9zu %8.2f  %s", exchange.connection, record.sequence,
                        record.command.c_str(), record.object.c_str(), record.lite ? 1 : 0, record.objects,
                        exchange.bytes, exchange.elapsed_ms, OneLine(record.outcome).c_str());
}

std::string Trace::Columns(const SentEvent& event) {
    return FormatString("event  %-10s %8.2f  %s", event.outcome, event.waited_ms,
                        OneLine(event.text).c_str());
}

void Trace::PrintLegend() {
    if (!traffic_) {
        return;
    }
    const std::string heads =
        FormatString("%-12s %6s %8s  %-8s %-29s %4s %7s %9s %8s  %s", "# time", "conn", "seq", "command",
                     "object", "lite", "objects", "bytes", "ms", "outcome");
    PrintLine(kLegend + heads);
}

void Trace::PrintExchange(const ServedExchange& exchange) {
    if (traffic_) {
        PrintLine(TimeOfDay() + " " + Columns(exchange));
    }
}

void Trace::PrintEvent(const SentEvent& event) {
    if (traffic_) {
        PrintLine(TimeOfDay() + " " + Columns(event));
    }
}

void Trace::PrintText(const std::string& text) {
    PrintLine(TimeOfDay() + " " + OneLine(text));
}

void Trace::PrintLine(const std::string& line) {
    const std::lock_guard<std::mutex> guard(mutex_);
    std::fprintf(out_, "%s\n", line.c_str());
    std::fflush(out_);
}

}  // namespace arraysim
