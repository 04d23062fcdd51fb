#pragma once

#include <cstdio>
#include <mutex>
#include <string>

#include "arraySim/control/eventSender.h"
#include "arraySim/control/service.h"

namespace arraysim {

/** The output of a running simulator, line by line. May be used from any thread. */
class Trace {
  public:
    /** out: not owned. traffic: whether exchanges and events are printed too. */
    Trace(std::FILE* out, bool traffic) : out_(out), traffic_(traffic) {}

    /** The meaning of the columns, and their heads. */
    void PrintLegend();
    void PrintExchange(const ServedExchange& exchange);
    void PrintEvent(const SentEvent& event);
    void PrintText(const std::string& text);

    /** The columns of an exchange behind its time. */
    static std::string Columns(const ServedExchange& exchange);
    static std::string Columns(const SentEvent& event);

  private:
    void PrintLine(const std::string& line);

    std::mutex mutex_;
    std::FILE* out_;
    const bool traffic_;
};

}  // namespace arraysim
