#include <cerrno>
#include <cstring>
#include <sstream>

#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/common/utils/textFile.h"
#include "arraySim/control/command.h"
#include "arraySim/model/numbers.h"
#include "arraySim/scenario/scenario.h"

namespace arraysim {

namespace {

struct Unit {
    std::string_view name;
    int64_t milliseconds;
};
constexpr Unit kUnits[] = {{"ms", 1}, {"s", 1000}, {"m", 60000}};

/** "5s", "250ms", "1m". */
int64_t ReadTime(const std::string& text) {
    const size_t end = text.find_first_not_of("0123456789");
    const std::optional<uint32_t> number = ReadUint32(std::string_view(text).substr(0, end));
    for (const Unit& unit : kUnits) {
        if (number && end != std::string::npos && std::string_view(text).substr(end) == unit.name) {
            return *number * unit.milliseconds;
        }
    }
    throw CommandError("'" + text + "' is no time; write 250ms, 5s or 1m");
}

/** The line behind its first `count` words. */
std::string Behind(const std::string& line, size_t count) {
    size_t at = line.find_first_not_of(" \t");
    for (size_t i = 0; i < count && at != std::string::npos; ++i) {
        at = line.find_first_of(" \t", at);
        at = at == std::string::npos ? at : line.find_first_not_of(" \t", at);
    }
    return at == std::string::npos ? std::string() : line.substr(at);
}

void ReadWait(const Catalogue& catalogue, const std::vector<std::string>& words, ScenarioStep& step) {
    const bool is_ping = words.size() == 3 && words[2] == kPingTopic;
    if (words.size() < 3 || words[1] != "for" || (!is_ping && words.size() != 4)) {
        throw CommandError("a wait reads: wait for GetList|Get|Modify KIND, or wait for Ping");
    }
    step.wait_command = words[2];
    step.wait_object = "-";
    if (is_ping) {
        return;
    }
    if (words[2] != "GetList" && words[2] != "Get" && words[2] != "Modify") {
        throw CommandError("'" + words[2] + "' is none of GetList, Get, Modify, Ping");
    }
    const std::optional<Selection> selection = catalogue.Find(words[3]);
    if (!selection || !Catalogue::IsRequestable(*selection)) {
        throw CommandError("'" + words[3] + "' is nothing that is asked for");
    }
    step.wait_object = selection->Name();
}

ScenarioStep ReadStep(const Catalogue& catalogue, const std::string& line) {
    ScenarioStep step;
    step.text = line;
    std::vector<std::string> words = SplitWords(line);
    std::string rest = line;
    if (words[0] == "at" || words[0] == "after") {
        if (words.size() < 3) {
            throw CommandError("a timed line reads: " + words[0] + " TIME COMMAND");
        }
        step.when = words[0] == "at" ? ScenarioStep::When::kAt : ScenarioStep::When::kAfter;
        step.time_ms = ReadTime(words[1]);
        rest = Behind(line, 2);
        words.erase(words.begin(), words.begin() + 2);
    }
    if (words[0] == "wait") {
        ReadWait(catalogue, words, step);
    } else {
        ParseCommand(catalogue, words);  // for its mistakes; it runs from its text
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
            ScenarioStep step = ReadStep(catalogue, line);
            step.line = number;
            if (step.when == ScenarioStep::When::kAt) {
                if (step.time_ms < latest_ms) {
                    throw CommandError("this time lies before that of an earlier line");
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

}  // namespace arraysim
