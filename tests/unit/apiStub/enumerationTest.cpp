#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <string>

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiEnumsIDStrList.h"
#include "apiMgmt/common/utils/apiMethodError.h"
#include "apiMgmt/common/utils/stringUtil.h"

namespace {

using E = APIEnumsIDStrList;

const ENUMTable* Find(std::string_view name) {
    const auto* found = std::ranges::find(E::gAllEnumTables, name, &ENUMNamedTable::name);
    return found == std::end(E::gAllEnumTables) ? nullptr : &found->rows;
}

bool DoublesUpTo(const ENUMTable& table, int32_t last) {
    int32_t expected = table.begin()->Value;
    for (const ENUMRow& row : table) {
        if (row.Value > last) {
            break;
        }
        if (row.Value != expected) {
            return false;
        }
        expected *= 2;
    }
    return true;
}

TEST(Enumerations, MasksCountInPowersOfTwo) {
    constexpr std::string_view kMasks[] = {
        "DayOfWeek",
        "MonthOfYear",
        "HourOfDay",
        "WeekOfMonth",
        "RedundantProfile",
        "NonRedundantProfile",
        "DiskReportType",
        "IoReportType",
        "VolumeReportType",
        "DualRedundantProfile",
        "ReportFrequency",
        "TaRecommendReason",
        "ChartType",
        "UpsStatus",
        "ChartAlertObjectType",
        "FrontEndTransportType",
    };
    for (const std::string_view name : kMasks) {
        ASSERT_NE(Find(name), nullptr) << name;
        EXPECT_EQ(Find(name)->begin()->Value, 1) << name;
        EXPECT_TRUE(DoublesUpTo(*Find(name), INT32_MAX)) << name;
    }
    EXPECT_EQ(ENUMTable(E::gDayOfWeekEnumIdStrList).FindDescription("Wednesday")->Value, 8);
    EXPECT_EQ(ENUMTable(E::gHourOfDayEnumIdStrList).FindDescription("Hour_23")->Value, 1 << 23);
}

std::vector<int32_t> ValuesAbove(const ENUMTable& table, int32_t value) {
    std::vector<int32_t> values;
    for (const ENUMRow& row : table) {
        if (row.Value > value) {
            values.push_back(row.Value);
        }
    }
    return values;
}

TEST(Enumerations, MasksThatGoOnByOne) {
    const ENUMTable tasks(E::gTsInitialConfigurationTasksEnumIdStrList);
    EXPECT_EQ(tasks.begin()->Value, 2);
    EXPECT_TRUE(DoublesUpTo(tasks, 512));
    EXPECT_THAT(ValuesAbove(tasks, 512), testing::ElementsAre(513, 514, 515, 516));

    const ENUMTable health(E::gDiskHealthEnumIdStrList);
    EXPECT_TRUE(DoublesUpTo(health, 1024));
    EXPECT_THAT(ValuesAbove(health, 1024), testing::ElementsAre(1025, 1026));

    const ENUMTable transport(E::gTransportTypeEnumIdStrList);
    EXPECT_TRUE(DoublesUpTo(transport, 8));
    EXPECT_THAT(ValuesAbove(transport, 8), testing::ElementsAre(9, 10));
}

// All other tables count by one, from 1 or 0; these leave ids out.
TEST(Enumerations, IdsThatNoRowHas) {
    const std::map<std::string_view, std::vector<int32_t>> kMissing = {
        {"ErrorState", {16, 19, 20, 21, 32, 33, 36}},
        {"FleetEventType", {14, 16, 17, 18}},
        {"UpdateStatus", {2, 6}},
        {"DiskUnassignedReason", {2}},
        {"ManagementApplication", {3}},
    };
    for (const auto& [name, ids] : kMissing) {
        const ENUMTable& table = *Find(name);
        for (int32_t id = table.begin()->Value; id < (table.end() - 1)->Value; ++id) {
            const bool is_missing = std::ranges::find(ids, id) != ids.end();
            EXPECT_EQ(table.FindValue(id) == nullptr, is_missing) << name << " " << id;
        }
    }
}

TEST(Enumerations, WindowSizesGoBy16KilobytesExcept128) {
    const ENUMTable table(E::gIscsiConnectionWindowSizeEnumIdStrList);
    for (int32_t id = 1; id <= 127; ++id) {
        const std::string size = std::to_string(id <= 7 ? 16 * id : 16 * (id + 1));
        EXPECT_EQ(table.FindValue(id)->Description, (id == 109 ? "Kb" : "KB_") + size);
        EXPECT_EQ(table.FindValue(id)->UiString, size + " KB");
    }
    EXPECT_EQ(table.FindValue(8)->UiString, "144 KB");
    EXPECT_EQ(table.FindValue(127)->UiString, "2048 KB");
    EXPECT_EQ(table.FindDescription("KB_128")->Value, 128);
    EXPECT_EQ(table.FindValue(128)->UiString, "128 KB");
}

std::string TimeZoneIdentifier(int32_t id, std::string name) {
    if (id == 594) {
        return "America_North_DakotaBeulah";
    }
    if (id >= 588 && id <= 601) {
        ReplaceAll(name, "/", "_");
        ReplaceAll(name, "-", "_");
        return name;
    }
    ReplaceAll(name, "/", "__");
    ReplaceAll(name, "GMT+", "GMT_PLUS_");
    ReplaceAll(name, "GMT-", "GMT_MINUS_");
    ReplaceAll(name, "-", id == 573 ? "_" : "");
    return name;
}

TEST(Enumerations, TimeZonesAreDerivedFromTheirNames) {
    const ENUMTable table(E::gTimeZoneEnumIdStrList);
    for (const ENUMRow& row : table) {
        EXPECT_EQ(row.Description, TimeZoneIdentifier(row.Value, std::string(row.UiString))) << row.Value;
    }
    const std::map<int32_t, std::string_view> kPlaces = {
        {1, "CET"},
        {13, "GMT+0"},
        {45, "W-SU"},
        {48, "Africa/Abidjan"},
        {573, "America/Blanc-Sablon"},
        {588, "Africa/Juba"},
        {589, "America/Blanc-Sablon"},
        {594, "America/North_Dakota/Beulah"},
        {602, "Antarctica/Troll"},
    };
    for (const auto& [id, name] : kPlaces) {
        EXPECT_EQ(table.FindValue(id)->UiString, name);
    }
    const auto* first = std::ranges::find(table, "America/Blanc-Sablon", &ENUMRow::UiString);
    EXPECT_EQ(first->Value, 573);
    EXPECT_EQ(table.FindDescription("America__PortauPrince")->UiString, "America/Port-au-Prince");
    EXPECT_EQ(table.FindDescription("Etc__GMT_MINUS_14")->UiString, "Etc/GMT-14");
}

// Letters and digits only, so that a name and its identifier can be held against each other.
std::string Letters(std::string_view text) {
    std::string letters;
    std::ranges::copy_if(text, std::back_inserter(letters),
                         [](unsigned char c) { return std::isalnum(c) != 0; });
    return ToLower(letters);
}

TEST(Enumerations, CountriesAreNamedAfterTheirIdentifiers) {
    const ENUMTable table(E::gCareBridgeCountryEnumIdStrList);
    const std::map<int32_t, std::string_view> kOtherLetters = {
        {1, "\305land Islands"}, {53, "C\364te d'Ivoire"},     {56, "Cura\347ao"},
        {178, "R\351union"},     {182, "Saint Barth\351lemy"},
    };
    int32_t id = 0;
    for (const ENUMRow& row : table) {
        EXPECT_EQ(row.Value, id++);
        const auto other = kOtherLetters.find(row.Value);
        if (other != kOtherLetters.end()) {
            EXPECT_EQ(row.UiString, other->second);
            continue;
        }
        const std::string_view code = row.Description.substr(row.Description.size() - 4);
        EXPECT_EQ(code[0], '_') << row.Description;
        EXPECT_EQ(Letters(row.UiString) + "_" + std::string(code.substr(1)),
                  Letters(row.Description.substr(0, row.Description.size() - 4)) + std::string(code));
    }
}

TEST(Enumerations, AreSearchedInRowOrder) {
    const ENUMTable states(E::gErrorStateEnumIdStrList);
    EXPECT_EQ(states.FindDescription("parsingerror")->Value, 4);
    EXPECT_EQ(states.FindDescription("Parsing Error"), nullptr);
    EXPECT_EQ(states.FindValue(999), nullptr);
    EXPECT_EQ(states.DescriptionOf(8), "IllegalSessionKey");
    EXPECT_EQ(states.DescriptionOf(16), "");
    EXPECT_EQ(ENUMTable().FindDescription(""), nullptr);
}

// The common layer knows the number alone.
TEST(Enumerations, HoldTheStateOfAnArraysErrors) {
    const APIMethodError error(TSResponseStatus{}, "file", 1);
    EXPECT_EQ(ENUMTable(E::gErrorStateEnumIdStrList).DescriptionOf(error.GetErrorState()), "TesseraError");
}

// Tables are used by the constructors of static objects: an initialiser that runs before main would come too
// late.
const std::string_view kBeforeMain = E::gStatusEnumIdStrList[0].Description;

TEST(Enumerations, AreThereBeforeMain) {
    EXPECT_EQ(kBeforeMain, "Up");
}

}  // namespace
