#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "arraySim/control/simulator.h"

namespace arraysim {

/** An error in a scenario, with file and line. */
class ScenarioError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/** One line of a scenario. */
struct ScenarioStep {
    enum class When {
        kNow,
        kAt,    ///< time since the start of the scenario
        kAfter  ///< time since the previous step
    };

    size_t line = 0;
    When when = When::kNow;
    int64_t time_ms = 0;
    std::string text;  ///< the line, verbatim

    std::string command;  ///< in the command language; empty for a wait
    std::string wait_command;
    std::string wait_object;
};

struct Scenario {
    std::string file;
    std::vector<ScenarioStep> steps;
};

/**
 * Parses a scenario. Empty lines and lines that begin with # are ignored; the others are
 *   [at TIME | after TIME] COMMAND
 *   [at TIME | after TIME] wait for GetList|Get|Modify KIND, or wait for Ping
 * TIME is a number with ms, s or m. file: for messages. Throws ScenarioError at the first error.
 */
Scenario ParseScenario(const Catalogue& catalogue, const std::string& file, std::string_view text);
Scenario ReadScenarioFile(const Catalogue& catalogue, const std::string& path);

/** The clock of a scenario: real time, or time that jumps in a test. */
class ScenarioClock {
  public:
    virtual ~ScenarioClock() = default;

    /** Returns the milliseconds since the start of the scenario. */
    virtual int64_t Now_ms() = 0;
    /** Blocks until then. Returns false if the scenario must end. */
    virtual bool SleepUntil(int64_t time_ms) = 0;
    /** Blocks until there were more than `seen` such exchanges. Returns false if the scenario must end. */
    virtual bool WaitForExchange(const std::string& command, const std::string& object, size_t seen) = 0;
};

/** Real time, by the monotonic clock. Stop ends all waits and may be called from any thread. */
class RealTimeClock : public ScenarioClock {
  public:
    explicit RealTimeClock(Simulator& simulator) : simulator_(simulator) {}

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

/** Runs a scenario to its end, even if steps fail. */
class ScenarioRunner {
  public:
    using Report = std::function<void(const std::string&)>;

    /** report: called for each step and each failure. */
    ScenarioRunner(const Scenario& scenario, Simulator& simulator, ScenarioClock& clock, Report report);

    /** Returns the number of failed steps, or none if the scenario was ended early. */
    std::optional<size_t> Run();
    /** Returns the number of steps that have failed so far. */
    size_t failures() const { return failures_; }

  private:
    bool WaitForTime(const ScenarioStep& step, int64_t previous_ms);
    bool WaitForExchange(const ScenarioStep& step);
    void RunCommand(const ScenarioStep& step);

    const Scenario& scenario_;
    Simulator& simulator_;
    ScenarioClock& clock_;
    Report report_;
    size_t failures_ = 0;
};

}  // namespace arraysim
