#include <gmock/gmock.h>

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiEnumsIDStrList.h"
#include "apiMgmt/common/utils/apiMethodError.h"

namespace {

using E = APIEnumsIDStrList;

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
