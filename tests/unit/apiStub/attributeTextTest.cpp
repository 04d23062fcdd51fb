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

/** Each row is a string and the form in which its value is written. */
template <class Attribute>
void ExpectWritten(const Attribute& attribute,
                   std::initializer_list<std::pair<const char*, const char*>> rows) {
    for (const auto& [text, written] : rows)
        EXPECT_EQ(attribute.ToText(attribute.FromText(text)), written) << text;
}

TEST(AttributeText, IsReadAndWrittenByItsType) {
    ExpectWritten(BOOLEANApiAttribute("B", 20, false, "B"), {{"1", "True"},
                                                             {"tRuE", "True"},
                                                             {"", "False"},
                                                             {"2", "False"},
                                                             {"01", "False"},
                                                             {" 1", "False"},
                                                             {"true ", "False"}});
    ExpectWritten(INTApiAttribute("N", 20, false, -1, -1, "N"),
                  {{"", "0"},
                   {"12abc", "12"},
                   {"  -7 8", "-7"},
                   {"+5", "5"},
                   {"\n\v\t\f\r 8", "8"},
                   {"+-5", "0"},
                   {"-", "0"},
                   {"9223372036854775807", "9223372036854775807"},
                   {"+99999999999999999999", "9223372036854775807"},
                   {"-99999999999999999999", "-9223372036854775808"}});
    ExpectWritten(DOUBLEApiAttribute("R", 20, false, -1, -1, "R"), {{"", "0"},
                                                                    {"x", "0"},
                                                                    {"1.5V", "1.5"},
                                                                    {" -2e3", "-2000"},
                                                                    {"nan", "0"},
                                                                    {"inf", "0"},
                                                                    {"1234567", "1.23457e+06"}});
    ExpectWritten(INTARRAYApiAttribute("N", 20, false, -1, -1, "N"),
                  {{"  1  -2 x 30 ", "1 -2 0 30"}, {"", ""}});
    ExpectWritten(ENUMApiAttribute("E", 20, false, "E"), {{" \tUp\n", "Up"}});
    ExpectWritten(ENUMMASKApiAttribute("M", 20, false, "M"),
                  {{" FibreChannel   Iscsi", "FibreChannel Iscsi"}, {"   ", ""}});
    ExpectWritten(IPV4ADDRESSApiAttribute("A", 15, false, "A"), {{"10.0.0.1", "10.0.0.1"},
                                                                 {"a.b.c.d", "a.b.c.d"},
                                                                 {"1.2.3", "0.0.0.0"},
                                                                 {"1.2.3.4.5", "0.0.0.0"},
                                                                 {"1.2.3.4.", "0.0.0.0"}});
    ExpectWritten(IPV6ADDRESSApiAttribute("A", 45, false, "A"), {{"fe80::1/64", "fe80::1"},
                                                                 {"::/129", "::"},
                                                                 {"fe80::1/", "fe80::1"},
                                                                 {"1.2.3.4", "::"},
                                                                 {"/64", "::"},
                                                                 {"fe80::1/64/64", "::"}});
    ExpectWritten(SIZEApiAttribute("S", 20, false, "S"), {{"1 GB", "2097152"}});
    ExpectWritten(TEMPERATUREApiAttribute("T", 20, false, "T"), {{"45 C", "45 C/113 F"}});
    ExpectWritten(VERSIONApiAttribute("V", 16, false, "V"), {{"V6.3.1.2", "06.03.01.002"}});
    ExpectWritten(DATETIMEApiAttribute("D", 20, false, "D"),
                  {{"10/31/2016-13:02:03", "10/31/2016 01:02:03 PM"}, {"", ""}});
    EXPECT_EQ(IPV4ADDRESSApiAttribute("A", 15, false, "A").ToText("host"), "0.0.0.0");
    EXPECT_EQ(IPV6ADDRESSApiAttribute("A", 45, false, "A").ToText("/64"), "");
    EXPECT_EQ(ENUMApiAttribute("E", 20, false, "E").ToText(" Up "), " Up ");

    const STRINGARRAYApiAttribute strings("S", 20, false, "S");
    EXPECT_EQ(strings.ToText({"a:b", "c"}), "a-co-b:c");
    for (const Strings& items : {Strings{"a:b", "c"}, Strings{"", "x", ""}, Strings{"::", "-"}, Strings{}})
        EXPECT_EQ(strings.FromText(strings.ToText(items)), items);
    const GETLISTFILTERApiAttribute filter("F", 20, false, "F");
    EXPECT_EQ(filter.ToText(filter.FromText("and Name = a&hy&b-").get()), "and Name = a&hy&b-");
    EXPECT_EQ(filter.FromText("Name = abc"), nullptr);
    EXPECT_EQ(filter.ToText(nullptr), "");
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

}  // namespace
