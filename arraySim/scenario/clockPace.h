#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

#include "arraySim/scenario/scenario.h"

namespace arraysim {

/** Real time, by the monotonic clock. Stop may be called from any thread and ends every wait. */
class ClockPace : public ScenarioPace {
  public:
    explicit ClockPace(Simulator& simulator) : simulator_(simulator) {}

    int64_t Now_ms() override;
    bool SleepUntil(int64_t time_ms) override;
    bool WaitForExchange(const std::string& command, const std::string& object, size_t seen) override;

    void Stop();

  private:
    Simulator& simulator_;
    const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    std::mutex mutex_;
    std::condition_variable stopped_;
    bool stop_ = false;
};

}  // namespace arraysim
