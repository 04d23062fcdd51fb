#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>

#include "apiMgmt/apiStub/base/apiAttributes/datetimeValue.h"
#include "apiMgmt/apiStub/base/apiAttributes/sizeValue.h"
#include "apiMgmt/common/utils/stringUtil.h"
#include "tests/unit/layers/temporaryFolder.h"

namespace {

// Uses a locale with a decimal comma and without AM and PM.
TEST(Locale, OfTheProgramDoesNotReachWhatTheArrayWrites) {
    const TemporaryFolder folder;
    const std::string name = "de_DE.UTF-8";
    ASSERT_EQ(system(("localedef -i de_DE -f UTF-8 " + folder.Path(name)).c_str()), 0);
    ASSERT_EQ(setenv("LOCPATH", folder.Path("").c_str(), 1), 0);
    ASSERT_NE(setlocale(LC_ALL, name.c_str()), nullptr);
    ASSERT_STREQ(localeconv()->decimal_point, ",");

    EXPECT_EQ(SIZEValue::FromText("1.5 TB").count, SIZEValue::FromText("1536 GB").count);
    EXPECT_TRUE(IsNumeric("1.5"));
    EXPECT_EQ(FormatString("%.2f", 1.5), "1.50");
    const DATETIMEValue time = DATETIMEValue::FromText("10/31/2016 01:02:03 PM");
    EXPECT_EQ(time.GetHour(), 13);
    EXPECT_EQ(time.ToText(), "10/31/2016 01:02:03 PM");
    EXPECT_STREQ(localeconv()->decimal_point, ",");
}

}  // namespace
