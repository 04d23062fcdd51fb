#include <gmock/gmock.h>

#include <string>

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiEnumsIDStrList.h"
#include "apiMgmt/common/utils/apiMethodError.h"
#include "apiMgmt/common/utils/stringUtil.h"

namespace {

using E = APIEnumsIDStrList;

TEST(Enumerations, WindowSizesGoBy16KilobytesExcept128) {
    const ENUMTable table(E::gIscsiConnectionWindowSizeEnumIdStrList);
    for (int32_t id = 1; id <= 127; ++id) {
        const std::string size = std::to_string(id <= 7 ? 16 * id : 16 * (id + 1));
        EXPECT_EQ(table.FindValue(id)->Description, (id == 109 ? "Kb" : "KB_") + size);
        EXPECT_EQ(table.FindValue(id)->UiString, size + " KB");
    }
    EXPECT_EQ(table.FindDescription("KB_128")->Value, 128);
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
}

TEST(Enumerations, AreSearchedInRowOrder) {
    const ENUMTable states(E::gErrorStateEnumIdStrList);
    EXPECT_EQ(states.FindDescription("parsingerror")->Value, 4);
    EXPECT_EQ(states.FindDescription("Parsing Error"), nullptr);
    EXPECT_EQ(states.FindValue(999), nullptr);
    EXPECT_EQ(states.DescriptionOf(8), "IllegalSessionKey");
    EXPECT_EQ(states.DescriptionOf(16), "");
    EXPECT_EQ(ENUMTable().FindDescription(""), nullptr);
    // The common layer has only the number.
    const APIMethodError error(TSResponseStatus{}, "file", 1);
    EXPECT_EQ(states.DescriptionOf(error.GetErrorState()), "TesseraError");
}

// Constructors of static objects use the tables, so these must be initialised at compile time.
const std::string_view kBeforeMain = E::gStatusEnumIdStrList[0].Description;

TEST(Enumerations, AreThereBeforeMain) {
    EXPECT_EQ(kBeforeMain, "Up");
}

}  // namespace
