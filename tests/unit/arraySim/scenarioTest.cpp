#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

#include "arraySim/model/presets.h"
#include "arraySim/scenario/scenario.h"
#include "tests/sourceFolder.h"
#include "tests/unit/arraySim/requests.h"
#include "tests/unit/errorOf.h"

using namespace arraysim;
using testing::ElementsAre;

namespace {

/** A clock that jumps to the end of each sleep. An expected exchange happens immediately. */
class SimulatedClock : public ScenarioClock {
  public:
    explicit SimulatedClock(Simulator& simulator) : simulator_(simulator) {}

    int64_t Now_ms() override { return now_ms_; }

    bool SleepUntil(int64_t time_ms) override {
        now_ms_ = std::max(now_ms_, time_ms);
        return now_ms_ < end_ms;
    }

    bool WaitForExchange(const std::string& command, const std::string& object, size_t seen) override {
        now_ms_ += 700;  // waiting takes time that the scenario does not define
        waits.push_back(command + " " + object);
        if (command == "Ping") {
            simulator_.Handle(PingMessage());
        } else {
            simulator_.Handle(CommandMessage(RequestDocument(object, command, {{"InstanceId", "64702"}})));
        }
        return simulator_.Exchanges(command, object) > seen;
    }

    std::vector<std::string> waits;
    int64_t end_ms = INT64_MAX;

  private:
    Simulator& simulator_;
    int64_t now_ms_ = 0;
};

class Scenarios : public testing::Test {
  protected:
    std::optional<size_t> Run(const Scenario& scenario) {
        ScenarioRunner runner(scenario, simulator_, clock_,
                              [this](const std::string& line) { lines_.push_back(line); });
        return runner.Run();
    }

    std::optional<size_t> Run(const std::string& text) {
        return Run(ParseScenario(Catalogue::Builtin(), "test", text));
    }

    Simulator simulator_{
        BuildPreset(Catalogue::Builtin(), *FindPreset("typical"), 1, 64702), {kTestKey}, Spelling::kApi};
    SimulatedClock clock_{simulator_};
    std::vector<std::string> lines_;
};

TEST_F(Scenarios, RunStepsAtTheirTimesAndReportFailedOnes) {
    EXPECT_EQ(Run("# comment\n"
                  "say begin\n"
                  "\n"
                  "  at 2s fail TsDisk 12\n"
                  "after 250ms expect TsDisk 12 Status Up\n"
                  "wait for GetList TsDisk\n"
                  "after 1s wait for Ping\n"
                  "at 1m recover TsDisk 12\n"
                  "after 500ms get TsDisk 12 Status\n"),
              1u);
    EXPECT_THAT(lines_,
                ElementsAre("   0.000 s  say begin", "   2.000 s  at 2s fail TsDisk 12",
                            "   2.250 s  after 250ms expect TsDisk 12 Status Up",
                            "test:5: FAILED: TsDisk 12 Status: expected 'Up', found 'Down'",
                            "   2.250 s  wait for GetList TsDisk", "   3.950 s  after 1s wait for Ping",
                            "  60.000 s  at 1m recover TsDisk 12",
                            "  60.500 s  after 500ms get TsDisk 12 Status", "Up\n"));
    EXPECT_THAT(clock_.waits, ElementsAre("GetList TsDisk", "Ping -"));
}

TEST_F(Scenarios, ExitEarlyIfStopped) {
    clock_.end_ms = 5000;
    EXPECT_EQ(Run("at 4s set TsDisk 12 Name early\nat 6s set TsDisk 12 Name late\n"), std::nullopt);
    EXPECT_TRUE(simulator_.Execute("expect TsDisk 12 Name early").good);
    RealTimeClock clock(simulator_);
    std::thread sleeper([&] { EXPECT_FALSE(clock.SleepUntil(3600000)); });
    std::thread waiter([&] { EXPECT_FALSE(clock.WaitForExchange("GetList", "TsDisk", 0)); });
    clock.Stop();
    sleeper.join();
    waiter.join();
}

TEST(ParseScenario, ReportsErrorsWithFileAndLine) {
    const std::pair<const char*, const char*> rows[] = {
        {"say a\n\nexplode", "file:3: unknown command 'explode'; `help` prints all"},
        {"at 5s", "file:1: expected: at TIME COMMAND"},
        {"at s say x", "file:1: 's' is not a time; write 250ms, 5s or 1m"},
        {"at 5s say x\nat 4s say y", "file:2: the time is earlier than that of a previous line"},
        {"wait for GetList", "file:1: expected: wait for GetList|Get|Modify KIND, or wait for Ping"},
        {"wait for Ping TsDisk", "file:1: unexpected 'Ping'; expected GetList, Get, Modify or Ping"},
        {"wait for GetList TsVirtualServer", "file:1: 'TsVirtualServer' cannot be requested"},
        {"expect TsDisk 5 Colour red", "file:1: TsDisk has no attribute 'Colour'"},
        {"after 2s fault hang on TsMoon", "file:1: unknown kind 'TsMoon'"},
    };
    for (const auto& [text, message] : rows) {
        EXPECT_EQ(ErrorOf([&, text = text] { ParseScenario(Catalogue::Builtin(), "file", text); }), message);
    }
    EXPECT_THROW(ReadScenarioFile(Catalogue::Builtin(), "/nonexistent"), ScenarioError);
}

TEST_F(Scenarios, TheDemonstrationMeetsItsExpectations) {
    const Scenario scenario =
        ReadScenarioFile(Catalogue::Builtin(), SOURCE_FOLDER "/arraySim/scenario/diskFailure.scenario");
    EXPECT_EQ(Run(scenario), 0u) << testing::PrintToString(lines_);
    EXPECT_THAT(clock_.waits, ElementsAre("GetList TsDisk", "GetList TsEnclosureCoolingFanSensor"));
}

}  // namespace
