#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/unit/apiClient/clientRun.h"

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

namespace {

std::vector<std::string> Completions(std::vector<std::string> words, const std::string& last) {
    words.insert(words.begin(), "--complete");
    words.push_back(last);
    std::istringstream lines(ClientRun(words).output);
    std::vector<std::string> candidates;
    for (std::string line; std::getline(lines, line);) {
        candidates.push_back(line);
    }
    return candidates;
}

TEST(ApiClientCompletion, TheLastWordBecomesWhatCanStandThere) {
    struct Case {
        std::vector<std::string> words;
        std::string last;
        std::vector<std::string> candidates;
    };
    const Case cases[] = {
        {{}, "TsDiskF", {"TsDiskFolder", "TsDiskFolderStorageUsage"}},
        {{}, "tsups", {"TsUps"}},
        {{"--format", "json"}, "TsUps", {"TsUps"}},
        {{"TsDisk"}, "Get", {"Get", "GetHistoricalIoUsage", "GetHistoricalStorageUsage", "GetList"}},
        {{"TsDisk"}, "Encl", {"Enclosure"}},
        {{"TsDisk", "Get"}, "", {"InstanceId="}},
        {{"TsController", "Modify"}, "Indic", {"IndicatorOn="}},
        {{"TsController", "Modify"}, "IndicatorOn=", {"IndicatorOn=True", "IndicatorOn=False"}},
        {{"tscontroller", "modify"}, "indicatoron=t", {"IndicatorOn=True"}},
        {{"TsController", "FanSensorList"}, "", {"InstanceId="}},
        {{"TsDisk", "GetHistoricalIoUsage"}, "H", {"HistoricalFilter."}},
        {{"TsDisk", "GetHistoricalIoUsage"},
         "HistoricalFilter.Use",
         {"HistoricalFilter.UseCurrent=", "HistoricalFilter.UseEndOfDay=",
          "HistoricalFilter.UseStartOfDay="}},
        {{"TsDisk", "GetHistoricalIoUsage"},
         "HistoricalFilter.UseCurrent=f",
         {"HistoricalFilter.UseCurrent=False"}},
        {{"Tessera", "AddIScsiTesseraConnections"}, "NatInfo.2.Ip", {"NatInfo.2.IpAddress="}},
        {{"TsDisk", "GetList", "--format"}, "", {"table", "csv", "json", "xml"}},
        {{"TsDisk", "GetList", "--columns"}, "Name,StatusM", {"Name,StatusMessage"}},
        {{"TsDisk", "GetList", "--filter"}, "Stat", {"Status = ", "StatusMessage "}},
        {{"TsDisk", "GetList", "--filter"},
         "Index ",
         {"Index = ", "Index > ", "Index >= ", "Index < ", "Index <= "}},
        {{"TsDisk", "GetList", "--filter"}, "Index >", {"Index > ", "Index >= "}},
        {{"TsDisk", "GetList", "--filter"},
         "Status = ",
         {"Status = Up", "Status = Down", "Status = Degraded"}},
        {{"TsDisk", "GetList", "--filter"}, "Status = D", {"Status = Down", "Status = Degraded"}},
        {{"--enumeration"}, "DiskTr", {"DiskTrack"}},
        {{"--locale"}, "en", {"en_US"}},
        {{"TsDisk", "GetList"}, "--fi", {"--filter"}},
        {{"TsDisk", "GetList"}, "--l", {"--lite", "--list", "--locale"}},
        {{"TsDisk", "--lite"}, "GetL", {"GetList"}},
        {{"TsToaster"}, "", {}},
        {{"TsDisk", "Fly"}, "", {}},
        {{"TsDisk", "Get"}, "Frob=", {}},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(Completions(each.words, each.last), each.candidates) << each.last;
    }
}

TEST(ApiClientCompletion, NothingIsOfferedThatNoFilterCompares) {
    EXPECT_THAT(Completions({"TsDisk", "GetList", "--filter"}, ""), Not(Contains("HealthMask ")));
    EXPECT_THAT(Completions({"TsDisk", "GetList", "--filter"}, "HealthMask = "), IsEmpty());
}

}  // namespace
