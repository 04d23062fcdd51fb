#include "arraySim/scenario/scenario.h"

#include <cerrno>
#include <cstring>
#include <sstream>

#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/common/utils/textFile.h"
#include "arraySim/control/commandParser.h"
#include "arraySim/control/words.h"
#include "arraySim/model/numbers.h"

namespace arraysim {

namespace {

struct Unit {
    std::string_view name;
    int64_t milliseconds;
};
constexpr Unit kUnits[] = {{"ms", 1}, {"s", 1000}, {"m", 60000}};

/** Parses "5s", "250ms" or "1m". Returns milliseconds. */
int64_t ParseTime(const std::string& text) {
    const size_t end = text.find_first_not_of("0123456789");
    const std::optional<uint32_t> number = ParseUint32(std::string_view(text).substr(0, end));
    for (const Unit& unit : kUnits) {
        if (number && end != std::string::npos && std::string_view(text).substr(end) == unit.name) {
            return *number * unit.milliseconds;
        }
    }
    throw CommandError("'" + text + "' is not a time; write 250ms, 5s or 1m");
}

/** Returns the line without its first `count` words. */
std::string SkipWords(const std::string& line, size_t count) {
    size_t at = line.find_first_not_of(" \t");
    for (size_t i = 0; i < count && at != std::string::npos; ++i) {
        at = line.find_first_of(" \t", at);
        at = at == std::string::npos ? at : line.find_first_not_of(" \t", at);
    }
    return at == std::string::npos ? std::string() : line.substr(at);
}

void ParseWait(const Catalogue& catalogue, const std::vector<std::string>& words, ScenarioStep& step) {
    const bool is_ping = words.size() == 3 && words[2] == kPingTopic;
    if (words.size() < 3 || words[1] != "for" || (!is_ping && words.size() != 4)) {
        throw CommandError("expected: wait for GetList|Get|Modify KIND, or wait for Ping");
    }
    step.wait_command = words[2];
    step.wait_object = "-";
    if (is_ping) {
        return;
    }
    if (words[2] != "GetList" && words[2] != "Get" && words[2] != "Modify") {
        throw CommandError("unexpected '" + words[2] + "'; expected GetList, Get, Modify or Ping");
    }
    const std::optional<Selection> selection = catalogue.Find(words[3]);
    if (!selection || !Catalogue::IsRequestable(*selection)) {
        throw CommandError("'" + words[3] + "' cannot be requested");
    }
    step.wait_object = selection->Name();
}

ScenarioStep ParseStep(const Catalogue& catalogue, const std::string& line) {
    ScenarioStep step;
    step.text = line;
    std::vector<std::string> words = SplitWords(line);
    std::string rest = line;
    if (words[0] == "at" || words[0] == "after") {
        if (words.size() < 3) {
            throw CommandError("expected: " + words[0] + " TIME COMMAND");
        }
        step.when = words[0] == "at" ? ScenarioStep::When::kAt : ScenarioStep::When::kAfter;
        step.time_ms = ParseTime(words[1]);
        rest = SkipWords(line, 2);
        words.erase(words.begin(), words.begin() + 2);
    }
    if (words[0] == "wait") {
        ParseWait(catalogue, words, step);
    } else {
        ParseCommand(catalogue, words);  // only to report errors; `rest` is executed
        step.command = rest;
    }
    return step;
}

}  // namespace

Scenario ParseScenario(const Catalogue& catalogue, const std::string& file, std::string_view text) {
    Scenario scenario;
    scenario.file = file;
    std::istringstream stream{std::string(text)};
    size_t number = 0;
    int64_t latest_ms = 0;
    for (std::string line; std::getline(stream, line);) {
        ++number;
        Trim(line);
        if (line.empty() || line[0] == '#') {
            continue;
        }
        try {
            ScenarioStep step = ParseStep(catalogue, line);
            step.line = number;
            if (step.when == ScenarioStep::When::kAt) {
                if (step.time_ms < latest_ms) {
                    throw CommandError("the time is earlier than that of a previous line");
                }
                latest_ms = step.time_ms;
            }
            scenario.steps.push_back(std::move(step));
        } catch (const CommandError& error) {
            throw ScenarioError(file + ":" + std::to_string(number) + ": " + error.what());
        }
    }
    return scenario;
}

Scenario ReadScenarioFile(const Catalogue& catalogue, const std::string& path) {
    const std::optional<std::string> text = ReadTextFile(path);
    if (!text) {
        throw ScenarioError("cannot read " + path + ": " + std::strerror(errno));
    }
    return ParseScenario(catalogue, path, *text);
}

int64_t RealTimeClock::Now_ms() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start_)
        .count();
}

bool RealTimeClock::SleepUntil(int64_t time_ms) {
    std::unique_lock<std::mutex> lock(mutex_);
    return !stopped_.wait_until(lock, start_ + std::chrono::milliseconds(time_ms), [&] { return stop_; });
}

bool RealTimeClock::WaitForExchange(const std::string& command, const std::string& object, size_t seen) {
    return simulator_.WaitForExchange(command, object, seen);
}

void RealTimeClock::Stop() {
    simulator_.StopWaiting();
    const std::lock_guard<std::mutex> guard(mutex_);
    stop_ = true;
    stopped_.notify_all();
}

ScenarioRunner::ScenarioRunner(const Scenario& scenario, Simulator& simulator, ScenarioClock& clock,
                               Report report)
    : scenario_(scenario), simulator_(simulator), clock_(clock), report_(std::move(report)) {}

std::optional<size_t> ScenarioRunner::Run() {
    int64_t previous_ms = 0;
    for (const ScenarioStep& step : scenario_.steps) {
        if (!WaitForTime(step, previous_ms)) {
            return std::nullopt;
        }
        report_(
            FormatString("%8.3f s  %s", static_cast<double>(clock_.Now_ms()) / 1000.0, step.text.c_str()));
        if (step.command.empty()) {
            if (!WaitForExchange(step)) {
                return std::nullopt;
            }
        } else {
            RunCommand(step);
        }
        previous_ms = clock_.Now_ms();
    }
    return failures_;
}

bool ScenarioRunner::WaitForTime(const ScenarioStep& step, int64_t previous_ms) {
    switch (step.when) {
        case ScenarioStep::When::kAt:
            return clock_.SleepUntil(step.time_ms);
        case ScenarioStep::When::kAfter:
            return clock_.SleepUntil(previous_ms + step.time_ms);
        case ScenarioStep::When::kNow:
            break;
    }
    return true;
}

bool ScenarioRunner::WaitForExchange(const ScenarioStep& step) {
    const size_t seen = simulator_.Exchanges(step.wait_command, step.wait_object);
    return clock_.WaitForExchange(step.wait_command, step.wait_object, seen);
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
