#include "arraySim/control/trace.h"

#include <algorithm>
#include <ctime>

#include "apiMgmt/common/platform/clock.h"
#include "apiMgmt/common/utils/stringUtil.h"

namespace arraysim {

namespace {

constexpr const char* kLegend =
    "# time      wall clock                     lite     1: reduced objects were asked for\n"
    "# conn      number of the connection       objects  objects in the answer\n"
    "# seq       sequence number of the request bytes    of the frame, as far as it was sent\n"
    "# command   GetList, Get, Modify, Ping     ms       from the request's last byte to the answer's\n"
    "# object    as the request names it        outcome  ok or the error code, and the faults that struck\n"
    "# event     to the daemon: delivered, dropped (nobody took it) or overflow; ms that it waited; its "
    "text\n";

std::string TimeOfDay() {
    const timeval now = ClockNow();
    const time_t seconds = now.tv_sec;
    tm parts{};
    localtime_r(&seconds, &parts);
    return FormatString("%02d:%02d:%02d.%03d", parts.tm_hour, parts.tm_min, parts.tm_sec,
                        static_cast<int>(now.tv_usec / 1000));
}

/** A peer's text must not break the line. */
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
