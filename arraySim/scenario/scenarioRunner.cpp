#include "apiMgmt/common/utils/stringUtil.h"
#include "arraySim/scenario/scenario.h"

namespace arraysim {

ScenarioRunner::ScenarioRunner(const Scenario& scenario, Simulator& simulator, ScenarioPace& pace,
                               Report report)
    : scenario_(scenario), simulator_(simulator), pace_(pace), report_(std::move(report)) {}

std::optional<size_t> ScenarioRunner::Run() {
    int64_t previous_ms = 0;
    for (const ScenarioStep& step : scenario_.steps) {
        if (!WaitForTime(step, previous_ms)) {
            return std::nullopt;
        }
        report_(FormatString("%8.3f s  %s", static_cast<double>(pace_.Now_ms()) / 1000.0, step.text.c_str()));
        if (step.command.empty()) {
            if (!WaitForExchange(step)) {
                return std::nullopt;
            }
        } else {
            RunCommand(step);
        }
        previous_ms = pace_.Now_ms();
    }
    return failures_;
}

bool ScenarioRunner::WaitForTime(const ScenarioStep& step, int64_t previous_ms) {
    switch (step.when) {
        case ScenarioStep::When::kAt:
            return pace_.SleepUntil(step.time_ms);
        case ScenarioStep::When::kAfter:
            return pace_.SleepUntil(previous_ms + step.time_ms);
        case ScenarioStep::When::kNow:
            break;
    }
    return true;
}

bool ScenarioRunner::WaitForExchange(const ScenarioStep& step) {
    const size_t seen = simulator_.Exchanges(step.wait_command, step.wait_object);
    return pace_.WaitForExchange(step.wait_command, step.wait_object, seen);
}

void ScenarioRunner::RunCommand(const ScenarioStep& step) {
    const Reply reply = simulator_.Execute(step.command);
    if (!reply.good) {
        ++failures_;
        report_(scenario_.file + ":" + std::to_string(step.line) + ": FAILED: " + reply.text);
    } else if (!reply.text.empty()) {
        report_(reply.text);
    }
}

}  // namespace arraysim
