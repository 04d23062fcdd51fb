#include <gmock/gmock.h>

#include "apiMgmt/apiStub/base/apiAttributes/apiAttributes.h"
#include "apiMgmt/common/utils/apiMethodError.h"

namespace {

/** A value, and what is said of it: the code, the message behind the attribute's name, the parameters behind
 * the name. */
struct Refusal {
    std::string text;
    int code;
    std::string message;
    std::vector<std::string> parameters = {};
};

void ExpectRefusal(const BASEApiAttribute& attribute, Refusal refusal) {
    const std::string& name = attribute.GetXmlName();
    refusal.parameters.insert(refusal.parameters.begin(), name);
    try {
        attribute.Validate(refusal.text);
        ADD_FAILURE() << name << " took \"" << refusal.text << "\"";
    } catch (const APIMethodError& error) {
        EXPECT_EQ(error.GetSummary(), "Attribute \"" + name + "\" was " + refusal.message);
        EXPECT_EQ(error.GetErrorCode(), refusal.code) << refusal.message;
        EXPECT_EQ(error.GetErrorState(), 4);
        EXPECT_EQ(error.GetParameters(), refusal.parameters) << refusal.message;
        EXPECT_THAT(error.GetSourceFile(), testing::StartsWith("apiMgmt/apiStub/base/apiAttributes/"));
        EXPECT_GT(error.GetSourceLine(), 0u);
    }
}

void ExpectAll(const BASEApiAttribute& attribute, const std::vector<std::string>& good,
               const std::vector<Refusal>& bad) {
    for (const std::string& text : good)
        EXPECT_TRUE(attribute.Validate(text)) << attribute.GetXmlName() << " " << text;
    for (const Refusal& refusal : bad)
        ExpectRefusal(attribute, refusal);
}

const std::string kAtLeast = ", but must be greater than or equal to ";
const std::string kAtMost = ", but must be less than or equal to ";
const std::string kAnd = " and less than or equal to ";

TEST(AttributeValidation, WholeNumbers) {
    ExpectAll(INTApiAttribute("Prefix", 20, false, 0, 128, ""), {"0", "128", "", "abc", "7 disks"},
              {{"129", 10760, "129" + kAtLeast + "0" + kAnd + "128", {"0", "128"}},
               {"-1", 10760, "-1" + kAtLeast + "0" + kAnd + "128", {"0", "128"}}});
    ExpectAll(INTApiAttribute("Index", 20, false, 0, -1, ""), {"0", "9223372036854775807"},
              {{"-1", 10761, "-1" + kAtLeast + "0", {"0"}}});
    ExpectAll(INTApiAttribute("Lun", 20, false, -1, 255, ""), {"255", "-9223372036854775808"},
              {{"256", 10762, "256" + kAtMost + "255", {"255"}}});
    ExpectAll(INTApiAttribute("Any", 20, false, -1, -1, ""), {"-5", "5"}, {});
}

TEST(AttributeValidation, RealNumbers) {
    ExpectAll(DOUBLEApiAttribute("Share", 20, false, 0, 100, ""), {"0", "100", "99.9"},
              {{"100.5", 10760, "100.500000" + kAtLeast + "0" + kAnd + "100", {"0", "100"}}});
    ExpectAll(DOUBLEApiAttribute("Load", 20, false, 1, -1, ""), {"1", "1e30"},
              {{"0.999999", 10761, "0.999999" + kAtLeast + "1", {"1"}},
               {"", 10761, "0.000000" + kAtLeast + "1", {"1"}}});
    ExpectAll(DOUBLEApiAttribute("Rate", 20, false, -1, 2, ""), {"2", "-7"},
              {{"2.01", 10762, "2.010000" + kAtMost + "2", {"2"}}});
}

TEST(AttributeValidation, ListsOfNumbersStopAtTheFirstBadOne) {
    ExpectAll(INTARRAYApiAttribute("Luns", 20, false, 1, 9, ""), {"", "1 9 5"},
              {{"5 10 0", 10760, "10" + kAtLeast + "1" + kAnd + "9", {"1", "9"}}});
}

TEST(AttributeValidation, Strings) {
    const std::string at_least_2 = " characters long], but must be a string at least 2 characters";
    const std::string at_most_4 = " characters long], but must be a string no more than 4 characters";
    ExpectAll(STRINGApiAttribute("Name", 20, false, 2, 4, "&<", "", ""), {"ab", "abcd", "a>b"},
              {{"a", 10763, "\"a\" [1" + at_least_2, {"2"}},
               {"", 10763, "\"\" [0" + at_least_2, {"2"}},
               {"abcde", 10764, "\"abcde\" [5" + at_most_4, {"4"}},
               // Four letters, five bytes.
               {"abc\xc3\xa4", 10764, "\"abc\xc3\xa4\" [5" + at_most_4, {"4"}},
               // Length comes before characters.
               {"<", 10763, "\"<\" [1" + at_least_2, {"2"}},
               {"a<b", 10011, "\"a<b\", but cannot contain these characters: &<"}});
    const std::string long_text(300, 'x');
    ExpectAll(STRINGApiAttribute("Notes", 20, false, -2147483647, -1, "<>&", "", ""), {"", long_text},
              {{long_text + "&", 10011, "\"" + long_text + "&\", but cannot contain these characters: <>&"}});
    ExpectAll(
        STRINGApiAttribute("Short", 20, false, -1, 0, ""), {""},
        {{"x", 10764, "\"x\" [1 characters long], but must be a string no more than 0 characters", {"0"}}});
    ExpectAll(STRINGApiAttribute("Free", 20, false, 0, 0, "<>&", "", ""), {"", "<>&", long_text}, {});
    ExpectAll(INSTANCEIDApiAttribute("InstanceId", 30, false, ""), {"", "<"}, {});
    ExpectAll(NAMEApiAttribute("TsName", 25, false, false, 1, -1, ""), {"a", "<&>"},
              {{"", 10763, "\"\" [0 characters long], but must be a string at least 1 characters", {"1"}}});
}

TEST(AttributeValidation, OtherKindsTakeAnything) {
    EXPECT_TRUE(BOOLEANApiAttribute("B", 20, false, "").Validate("perhaps"));
    EXPECT_TRUE(ENUMApiAttribute("E", 20, false, "").Validate("NoSuchRow"));
    EXPECT_TRUE(IPV4ADDRESSApiAttribute("A", 15, false, "").Validate("nowhere"));
    EXPECT_TRUE(SIZEApiAttribute("S", 20, false, "").Validate("big"));
}

}  // namespace
