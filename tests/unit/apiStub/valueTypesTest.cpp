#include <gmock/gmock.h>
#include <stdlib.h>
#include <time.h>

#include "apiMgmt/apiStub/base/apiAttributes/apiObjectInstance.h"
#include "apiMgmt/apiStub/base/apiAttributes/datetimeValue.h"
#include "apiMgmt/apiStub/base/apiAttributes/sizeValue.h"
#include "apiMgmt/apiStub/base/apiAttributes/temperatureValue.h"
#include "apiMgmt/apiStub/base/apiAttributes/versionValue.h"

namespace {

constexpr uint64_t kMaximum = UINT64_MAX;

class DateTime : public testing::Test {
  protected:
    // Local time of a zone with daylight saving until 6 November 2016.
    void SetUp() override {
        setenv("TZ", "CST6CDT,M3.2.0,M11.1.0", 1);
        tzset();
    }
};

constexpr int64_t kHalloween = 1477936923;  // 13:02:03 in daylight time

TEST_F(DateTime, BothFormsReadAsTheSameTime) {
    const DATETIMEValue value = DATETIMEValue::FromText("10/31/2016 01:02:03 PM");
    EXPECT_EQ(value.GetSeconds(), uint64_t{kHalloween});
    EXPECT_EQ(DATETIMEValue::FromText("10/31/2016-13:02:03").GetSeconds(), value.GetSeconds());
    EXPECT_EQ(value.ToText(), "10/31/2016 01:02:03 PM");
    const DATETIMEValue winter = DATETIMEValue::FromText("12/01/2016 12:00:00 AM");
    EXPECT_EQ(winter.GetSeconds(), 1480572000U);
    EXPECT_EQ(winter.ToText(), "12/01/2016 12:00:00 AM");
}

TEST_F(DateTime, WhatCannotBeReadIsNoDate) {
    for (const char* text : {"", "yesterday", "10/31/2016", "31/10/2016 01:02:03 PM",
                             "10/31/2016 13:02:03 PM", "10/31/2016T13:02:03", "01/01/1960 12:00:00 PM"}) {
        EXPECT_EQ(DATETIMEValue::FromText(text).GetSeconds(), 0U) << text;
    }
    EXPECT_EQ(DATETIMEValue(-5).GetSeconds(), 0U);
    EXPECT_EQ(DATETIMEValue().ToText(), "");
}

std::vector<int> PartsOf(const DATETIMEValue& value) {
    return {value.GetYear(),   value.GetMonth(),  value.GetDayOfMonth(),          value.GetHour(),
            value.GetMinute(), value.GetSecond(), value.GetMinutesSinceMidnight()};
}

TEST_F(DateTime, PartsOfTheLocalTime) {
    EXPECT_THAT(PartsOf(DATETIMEValue(kHalloween)), testing::ElementsAre(2016, 10, 31, 13, 2, 3, 782));
    EXPECT_THAT(PartsOf(DATETIMEValue(0)), testing::Each(0));
    EXPECT_THAT(PartsOf(DATETIMEValue(INT64_MAX)), testing::Each(0));
}

TEST(Size, FromText) {
    const std::pair<const char*, uint64_t> kCases[] = {
        {"", 0},           {"2048", 2048},         {"18446744073709551615", kMaximum},
        {"-5", 0},         {"12.9", 12},           {"1 GB", 2097152},
        {"  1.5 kB ", 3},  {"1 p", 2199023255552}, {"-1 GB", 0},
        {"1 XB", 1},       {"-42 blocks", 0},      {"1e300 GB", kMaximum / 512},
        {"inf", kMaximum},
    };
    for (const auto& [text, count] : kCases) {
        EXPECT_EQ(SIZEValue::FromText(text).count, count) << text;
    }
}

TEST(Size, ToText) {
    EXPECT_EQ((SIZEValue{2097152, false}.ToText()), "2097152");
    EXPECT_EQ((SIZEValue{1000, true}.ToText()), "1024");
    EXPECT_EQ((SIZEValue{499, true}.ToText()), "510");
    // A product in 64 bits would overflow.
    EXPECT_EQ((SIZEValue{uint64_t{1} << 60, true}.ToText()), "1180591620717411303");
}

TEST(Size, ToDisplayText) {
    const std::tuple<uint64_t, bool, const char*> kCases[] = {
        {0, false, ""},
        {1, false, "512 bytes"},
        {2, false, "1 KB"},
        {3, false, "1.50 KB"},
        {2048, false, "1 MB"},
        {2069, false, "1.01 MB"},
        {2068, false, "1 MB"},     // 1.00977: less than a hundredth
        {4087, false, "2.00 MB"},  // 1.99560: rounds up to 100 hundredths
        {1953125, true, "1 GB"},   // 10^9 bytes
        {uint64_t{1} << 41, false, "1 PB"},
        {uint64_t{1} << 60, false, "16384 PB"},
    };
    for (const auto& [count, manufacturerUnits, text] : kCases) {
        EXPECT_EQ((SIZEValue{count, manufacturerUnits}.ToDisplayText()), text) << count;
    }
}

TEST(Temperature, FromText) {
    const std::pair<const char*, int32_t> kCases[] = {
        {"45 C/113 F", 45}, {"113 F/45 C", 45},  {" 45 C / 113 f ", 45},
        {"45 C", 45},       {"-40 F", -40},      {"33 F", 0},
        {"25.9 C", 25},     {"45C", 0},          {"", 0},
        {"/5 C", 0},        {"1 C/34 F/1 C", 0}, {"45 C/100 F", 0},
        {"45 C/114 F", 45},
    };
    for (const auto& [text, celsius] : kCases) {
        EXPECT_EQ(TEMPERATUREValue::FromText(text).GetCelsius(), celsius) << text;
    }
}

TEST(Temperature, TruncatesTowardsZero) {
    const std::tuple<int32_t, int32_t, const char*> kCases[] = {
        {45, 113, "45 C/113 F"},
        {-18, 0, "-18 C/0 F"},
        {-1, 31, "-1 C/31 F"},
        {-40, -40, "-40 C/-40 F"},
        {INT32_MAX, INT32_MAX, "2147483647 C/2147483647 F"},
    };
    for (const auto& [celsius, fahrenheit, text] : kCases) {
        EXPECT_EQ(TEMPERATUREValue(celsius).GetFahrenheit(), fahrenheit);
        EXPECT_EQ(TEMPERATUREValue(celsius).ToText(), text);
    }
    // 78 F are 25.6 C, but this is the string for 26 C.
    EXPECT_EQ(TEMPERATUREValue::FromText("26 C/78 F").GetCelsius(), 26);
    EXPECT_EQ(TEMPERATUREValue::FromText("26 C/77 F").GetCelsius(), 0);
}

TEST(Version, TextAndLimits) {
    const std::pair<const char*, const char*> kCases[] = {
        {"V6.3.1.2", "06.03.01.002.00"},  {"  Release 6.5.20.18.3.9 ", "06.05.20.018.03"},
        {"100.0.0.0", "99.00.00.000.00"}, {"1.100.1000.10000.100", "01.99.999.9999.99"},
        {"1.-2.x.4b", "01.00.00.004.00"}, {"99999999999999999999", "99.00.00.000.00"},
        {"", "00.00.00.000.00"},
    };
    for (const auto& [text, expected] : kCases) {
        EXPECT_EQ(VERSIONValue::FromText(text).ToTextWithHotfix(), expected) << text;
    }
    EXPECT_EQ(VERSIONValue::FromText("V6.3.1.2").ToText(), "06.03.01.002");
}

TEST(Version, OrderedByOneNumber) {
    EXPECT_EQ(VERSIONValue::FromText("6.3.1.2.7").OrderNumber(), 60301002000007);
}

}  // namespace
