#include <gmock/gmock.h>

#include <locale>
#include <memory>

#include "apiMgmt/apiStub/base/apiAttributes/apiAttributes.h"
#include "apiMgmt/common/utils/apiMethodError.h"
#include "tests/unit/apiStub/sampleClasses.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Strings = std::vector<std::string>;

TEST(AttributeText, BooleansReadOneAndTrue) {
    const BOOLEANApiAttribute attribute("B", 20, false, "B");
    for (const char* text : {"1", "true", "TRUE", "tRuE"})
        EXPECT_TRUE(attribute.FromText(text)) << text;
    for (const char* text : {"", "0", "2", "01", " 1", "true ", "yes"})
        EXPECT_FALSE(attribute.FromText(text)) << text;
    EXPECT_EQ(attribute.ToText(true), "True");
    EXPECT_EQ(attribute.ToText(false), "False");
}

TEST(AttributeText, NumbersAreWhatAStreamCouldRead) {
    const INTApiAttribute number("N", 20, false, -1, -1, "N");
    const std::pair<const char*, int64_t> numbers[] = {{"", 0},
                                                       {"12abc", 12},
                                                       {"  -7 8", -7},
                                                       {"+5", 5},
                                                       {"\n\v\t\f\r 8", 8},
                                                       {"+-5", 0},
                                                       {"-", 0},
                                                       {"-0012x", -12},
                                                       {"9223372036854775807", INT64_MAX},
                                                       {"9223372036854775808", INT64_MAX},
                                                       {"+99999999999999999999", INT64_MAX},
                                                       {"-99999999999999999999", INT64_MIN}};
    for (const auto& [text, value] : numbers)
        EXPECT_EQ(number.FromText(text), value) << text;
    EXPECT_EQ(number.ToText(INT64_MIN), "-9223372036854775808");

    const DOUBLEApiAttribute real("R", 20, false, -1, -1, "R");
    const std::pair<const char*, double> reals[] = {{"", 0},          {"x", 0},   {"1.5V", 1.5},
                                                    {" -2e3", -2000}, {"nan", 0}, {"inf", 0}};
    for (const auto& [text, value] : reals)
        EXPECT_EQ(real.FromText(text), value) << text;
    EXPECT_EQ(real.ToText(3.25), "3.25");
    EXPECT_EQ(real.ToText(1234567.0), "1.23457e+06");
    EXPECT_EQ(real.ToText(2.0), "2");
}

TEST(AttributeText, ListsKeepTheirItems) {
    const INTARRAYApiAttribute numbers("N", 20, false, -1, -1, "N");
    EXPECT_EQ(numbers.ToText({1, -2, 30}), "1 -2 30");
    EXPECT_THAT(numbers.FromText("  1  -2 x 30 "), ElementsAre(1, -2, 0, 30));
    EXPECT_THAT(numbers.FromText(""), IsEmpty());
    EXPECT_EQ(numbers.ToText({}), "");

    const ENUMMASKApiAttribute mask("M", 20, false, "M");
    EXPECT_EQ(mask.ToText({"FibreChannel", "Iscsi"}), "FibreChannel Iscsi");
    EXPECT_THAT(mask.FromText(" FibreChannel   Iscsi"), ElementsAre("FibreChannel", "Iscsi"));
    EXPECT_THAT(mask.FromText("   "), IsEmpty());

    const STRINGARRAYApiAttribute strings("S", 20, false, "S");
    EXPECT_EQ(strings.ToText({"a:b", "c"}), "a-co-b:c");
    for (const Strings& items : {Strings{"a:b", "c"}, Strings{"", "x", ""}, Strings{"::", "-"}, Strings{}})
        EXPECT_EQ(strings.FromText(strings.ToText(items)), items);

    const ENUMApiAttribute word("E", 20, false, "E");
    EXPECT_EQ(word.FromText(" \tUp\n"), "Up");
    EXPECT_EQ(word.ToText(" Up "), " Up ");
}

TEST(AttributeText, AddressesThatAreNoneBecomeTheNullAddress) {
    const IPV4ADDRESSApiAttribute v4("A", 15, false, "A");
    for (const char* good : {"10.0.0.1", "a.b.c.d", "...", "999.1.1.1"}) {
        EXPECT_EQ(v4.FromText(good), good);
        EXPECT_EQ(v4.ToText(good), good);
    }
    for (const char* bad : {"", "1.2.3", "1.2.3.4.5", "1.2.3.4.", "host"}) {
        EXPECT_EQ(v4.FromText(bad), "0.0.0.0") << bad;
        EXPECT_EQ(v4.ToText(bad), "0.0.0.0") << bad;
    }

    const IPV6ADDRESSApiAttribute v6("A", 45, false, "A");
    for (const auto& [text, address] : std::map<std::string, std::string>{
             {"fe80::1/64", "fe80::1"}, {"fe80::1", "fe80::1"}, {"::/129", "::"}, {"fe80::1/", "fe80::1"}}) {
        EXPECT_EQ(v6.FromText(text), address) << text;
        EXPECT_EQ(v6.ToText(text), address) << text;
    }
    for (const char* bad : {"", "1.2.3.4", "fe80:::1", "/64", "fe80::1/64/64"}) {
        EXPECT_EQ(v6.FromText(bad), "::") << bad;
        EXPECT_EQ(v6.ToText(bad), "") << bad;
    }
}

TEST(AttributeText, ReferencesTravelAloneAndInLists) {
    const OBJECTApiAttribute one("O", 20, false, "O");
    const APIObjectInstance fan("64702.1", "TsFan", "Fan 1: left");
    EXPECT_EQ(one.ToText(&fan), "64702.1 TsFan Fan 1: left");
    EXPECT_EQ(one.ToText(nullptr), "");
    EXPECT_EQ(one.FromText("64702.1 TsFan Fan 1: left")->instanceName, "Fan 1: left");
    EXPECT_EQ(one.FromText(""), nullptr);
    EXPECT_EQ(one.FromText("64702.1 TsFan"), nullptr);

    const OBJECTARRAYApiAttribute list("L", 20, false, "L");
    const APIObjectInstance disk("7", "TsDisk", "01-02");
    EXPECT_EQ(list.ToText({&fan, nullptr, &disk}), "64702.1 TsFan Fan 1-co- left:7 TsDisk 01-02");
    const auto read = list.FromText(" 64702.1 TsFan Fan 1-co- left : :no reference: 7 TsDisk 01-02");
    ASSERT_EQ(read.size(), 2u);
    EXPECT_EQ(read[0]->ToText(), "64702.1 TsFan Fan 1: left");
    EXPECT_EQ(read[1]->ToText(), "7 TsDisk 01-02");
    EXPECT_THAT(list.FromText(""), IsEmpty());

    sample::Disk object;
    object.SetInstanceId("7");
    object.SetInstanceName("01-02");
    EXPECT_EQ(APIObjectInstance(object).ToText(), object.GetInstanceText());
    EXPECT_EQ(object.GetInstanceText(), "7 TsDisk 01-02");
}

TEST(AttributeText, MethodObjectsTravelAsElements) {
    sample::HistoricalFilter filter;
    filter.SetAttribute("FilterTime", "A & B");
    filter.SetAttribute("Unknown", "left out");
    const std::string element = "<HistoricalFilter><FilterTime>A &amp; B</FilterTime></HistoricalFilter>";
    EXPECT_EQ(METHODOBJECTApiAttribute("H", 20, false, "H").ToText(&filter), element);
    EXPECT_EQ(METHODOBJECTApiAttribute("H", 20, false, "H").ToText(nullptr), "");
    EXPECT_EQ(METHODOBJECTARRAYApiAttribute("H", 20, false, "H").ToText({&filter, nullptr, &filter}),
              element + element);
}

TEST(AttributeText, ValueTypesComeBack) {
    const SIZEApiAttribute size("S", 20, false, "S");
    EXPECT_EQ(size.ToText(size.FromText("1 GB")), "2097152");
    const TEMPERATUREApiAttribute temperature("T", 20, false, "T");
    EXPECT_EQ(temperature.ToText(temperature.FromText("45 C")), "45 C/113 F");
    const VERSIONApiAttribute version("V", 16, false, "V");
    EXPECT_EQ(version.ToText(version.FromText("V6.3.1.2")), "06.03.01.002");
    const DATETIMEApiAttribute date("D", 20, false, "D");
    EXPECT_EQ(date.ToText(date.FromText("10/31/2016-13:02:03")), "10/31/2016 01:02:03 PM");
    EXPECT_EQ(date.ToText(date.FromText("")), "");
    const GETLISTFILTERApiAttribute filter("F", 20, false, "F");
    EXPECT_EQ(filter.ToText(filter.FromText("and Name = a&hy&b-").get()), "and Name = a&hy&b-");
    EXPECT_EQ(filter.FromText("Name = abc"), nullptr);
    EXPECT_EQ(filter.ToText(nullptr), "");
}

}  // namespace
