#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "arraySim/control/simulator.h"

namespace arraysim {

/** A mistake in a scenario, with file and line. */
class ScenarioError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/** One line of a scenario: when, and what. */
struct ScenarioStep {
    enum class When {
        kNow,
        kAt,    ///< so long after the start of the scenario
        kAfter  ///< so long after the step before it
    };

    size_t line = 0;
    When when = When::kNow;
    int64_t time_ms = 0;
    std::string text;  ///< the line as it is written, for people

    std::string command;  ///< of the command language; empty for a wait
    std::string wait_command;
    std::string wait_object;
};

struct Scenario {
    std::string file;
    std::vector<ScenarioStep> steps;
};

/**
 * Reads a scenario. Empty lines and lines that begin with # are passed over; the others read
 *   [at TIME | after TIME] COMMAND
 *   [at TIME | after TIME] wait for GetList|Get|Modify KIND, or wait for Ping
 * TIME is a number with ms, s or m. file: for messages. Throws ScenarioError at the first mistake.
 */
Scenario ParseScenario(const Catalogue& catalogue, const std::string& file, std::string_view text);
Scenario ReadScenarioFile(const Catalogue& catalogue, const std::string& path);

/** Time and waiting, so that a scenario can run on a clock or jump. */
class ScenarioPace {
  public:
    virtual ~ScenarioPace() = default;

    /** Milliseconds since the scenario began. */
    virtual int64_t Now_ms() = 0;
    /** False when the scenario is to end instead. */
    virtual bool SleepUntil(int64_t time_ms) = 0;
    /** Until more than `seen` such exchanges have been; false when the scenario is to end instead. */
    virtual bool WaitForExchange(const std::string& command, const std::string& object, size_t seen) = 0;
};

/** Runs a scenario to its end, also past steps that fail. */
class ScenarioRunner {
  public:
    using Report = std::function<void(const std::string&)>;

    /** report: called for each step and each failure. */
    ScenarioRunner(const Scenario& scenario, Simulator& simulator, ScenarioPace& pace, Report report);

    /** The number of steps that failed; none when it was ended early. */
    std::optional<size_t> Run();
    /** Steps that have failed so far. */
    size_t failures() const { return failures_; }

  private:
    bool WaitForTime(const ScenarioStep& step, int64_t previous_ms);
    bool WaitForExchange(const ScenarioStep& step);
    void RunCommand(const ScenarioStep& step);

    const Scenario& scenario_;
    Simulator& simulator_;
    ScenarioPace& pace_;
    Report report_;
    size_t failures_ = 0;
};

}  // namespace arraysim
