#pragma once

#include <cstdio>
#include <mutex>
#include <string>

#include "arraySim/control/eventSender.h"
#include "arraySim/control/service.h"

namespace arraysim {

/** The output of a running simulator. May be used from any thread. */
class Trace {
  public:
    /** out: not owned. traffic: whether to print exchanges and events. */
    Trace(std::FILE* out, bool traffic) : out_(out), traffic_(traffic) {}

    /** Prints the meaning of the columns, and their headings. */
    void PrintLegend();
    void PrintExchange(const ServedExchange& exchange);
    void PrintEvent(const SentEvent& event);
    void PrintText(const std::string& text);

    /** Return the columns after the time. */
    static std::string Columns(const ServedExchange& exchange);
    static std::string Columns(const SentEvent& event);

  private:
    void PrintLine(const std::string& line);

    std::mutex mutex_;
    std::FILE* out_;
    const bool traffic_;
};

}  // namespace arraysim
