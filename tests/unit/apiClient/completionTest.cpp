#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/unit/apiClient/clientRun.h"

namespace {

std::vector<std::string> Completions(const std::string& words, const std::string& last) {
    std::istringstream lines(ClientRun("--complete " + words + " '" + last + "'").output);
    std::vector<std::string> candidates;
    for (std::string line; std::getline(lines, line);) {
        candidates.push_back(line);
    }
    return candidates;
}

TEST(ApiClientCompletion, CompletesTheLastWord) {
    const std::tuple<std::string, std::string, std::vector<std::string>> cases[] = {
        {"TsDisk", "Get", {"Get", "GetHistoricalIoUsage", "GetHistoricalStorageUsage", "GetList"}},
        {"tscontroller modify", "indicatoron=t", {"IndicatorOn=True"}},
        {"TsDisk GetHistoricalIoUsage", "H", {"HistoricalFilter."}},
        {"TsDisk GetHistoricalIoUsage",
         "HistoricalFilter.Use",
         {"HistoricalFilter.UseCurrent=", "HistoricalFilter.UseEndOfDay=",
          "HistoricalFilter.UseStartOfDay="}},
        {"Tessera AddIScsiTesseraConnections", "NatInfo.2.Ip", {"NatInfo.2.IpAddress="}},
        {"TsDisk GetList --filter", "Stat", {"Status = ", "StatusMessage "}},
        {"TsDisk GetList --filter", "Index ", {"Index = ", "Index > ", "Index >= ", "Index < ", "Index <= "}},
        {"TsDisk GetList --filter", "Status = ", {"Status = Up", "Status = Down", "Status = Degraded"}},
        {"--locale", "en", {"en_US"}},
        {"TsDisk GetList --filter", "HealthM", {}},  // filters do not support it
        {"TsToaster", "", {}},
        {"TsDisk Get", "Frob=", {}},
    };
    for (const auto& [words, last, candidates] : cases) {
        EXPECT_EQ(Completions(words, last), candidates) << last;
    }
}

}  // namespace
