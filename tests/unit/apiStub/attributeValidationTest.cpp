#include <gmock/gmock.h>

#include "apiMgmt/apiStub/base/apiAttributes/apiAttributes.h"
#include "apiMgmt/common/utils/apiMethodError.h"

namespace {

struct Refusal {
    std::string text;
    std::string message;
    int code;
    std::vector<std::string> parameters;
};

void ExpectRefusal(const BASEApiAttribute& attribute, const Refusal& refusal) {
    try {
        attribute.Validate(refusal.text);
        ADD_FAILURE() << attribute.GetXmlName() << " took \"" << refusal.text << "\"";
    } catch (const APIMethodError& error) {
        EXPECT_EQ(error.GetSummary(), refusal.message);
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

TEST(AttributeValidation, WholeNumbers) {
    ExpectAll(
        INTApiAttribute("Prefix", 20, false, 0, 128, ""), {"0", "128", "", "abc", "7 disks"},
        {{"129",
          "Attribute \"Prefix\" was 129, but must be greater than or equal to 0 and less than or equal to "
          "128",
          10760,
          {"Prefix", "0", "128"}},
         {"-1",
          "Attribute \"Prefix\" was -1, but must be greater than or equal to 0 and less than or equal to 128",
          10760,
          {"Prefix", "0", "128"}}});
    ExpectAll(INTApiAttribute("Index", 20, false, 0, -1, ""), {"0", "9223372036854775807"},
              {{"-1",
                "Attribute \"Index\" was -1, but must be greater than or equal to 0",
                10761,
                {"Index", "0"}}});
    ExpectAll(
        INTApiAttribute("Lun", 20, false, -1, 255, ""), {"255", "-9223372036854775808"},
        {{"256", "Attribute \"Lun\" was 256, but must be less than or equal to 255", 10762, {"Lun", "255"}}});
    ExpectAll(INTApiAttribute("Any", 20, false, -1, -1, ""), {"-5", "5"}, {});
}

TEST(AttributeValidation, RealNumbers) {
    ExpectAll(
        DOUBLEApiAttribute("Share", 20, false, 0, 100, ""), {"0", "100", "99.9"},
        {{"100.5",
          "Attribute \"Share\" was 100.500000, but must be greater than or equal to 0 and less than or equal "
          "to 100",
          10760,
          {"Share", "0", "100"}}});
    ExpectAll(DOUBLEApiAttribute("Load", 20, false, 1, -1, ""), {"1", "1e30"},
              {{"0.999999",
                "Attribute \"Load\" was 0.999999, but must be greater than or equal to 1",
                10761,
                {"Load", "1"}},
               {"",
                "Attribute \"Load\" was 0.000000, but must be greater than or equal to 1",
                10761,
                {"Load", "1"}}});
    ExpectAll(DOUBLEApiAttribute("Rate", 20, false, -1, 2, ""), {"2", "-7"},
              {{"2.01",
                "Attribute \"Rate\" was 2.010000, but must be less than or equal to 2",
                10762,
                {"Rate", "2"}}});
}

TEST(AttributeValidation, ListsOfNumbersStopAtTheFirstBadOne) {
    ExpectAll(
        INTARRAYApiAttribute("Luns", 20, false, 1, 9, ""), {"", "1 9 5"},
        {{"5 10 0",
          "Attribute \"Luns\" was 10, but must be greater than or equal to 1 and less than or equal to 9",
          10760,
          {"Luns", "1", "9"}}});
    ExpectAll(
        INTARRAYApiAttribute("Luns", 20, false, 1, -1, ""), {},
        {{"5 0", "Attribute \"Luns\" was 0, but must be greater than or equal to 1", 10761, {"Luns", "1"}}});
    ExpectAll(
        INTARRAYApiAttribute("Luns", 20, false, -1, 9, ""), {},
        {{"10", "Attribute \"Luns\" was 10, but must be less than or equal to 9", 10762, {"Luns", "9"}}});
}

TEST(AttributeValidation, Strings) {
    ExpectAll(
        STRINGApiAttribute("Name", 20, false, 2, 4, "&<", "", ""), {"ab", "abcd", "a>b"},
        {{"a",
          "Attribute \"Name\" was \"a\" [1 characters long], but must be a string at least 2 characters",
          10763,
          {"Name", "2"}},
         {"",
          "Attribute \"Name\" was \"\" [0 characters long], but must be a string at least 2 characters",
          10763,
          {"Name", "2"}},
         {"abcde",
          "Attribute \"Name\" was \"abcde\" [5 characters long], but must be a string no more than 4 "
          "characters",
          10764,
          {"Name", "4"}},
         // Four letters, five bytes.
         {"abc\xc3\xa4",
          "Attribute \"Name\" was \"abc\xc3\xa4\" [5 characters long], but must be a string no more than 4 "
          "characters",
          10764,
          {"Name", "4"}},
         // Length comes before characters.
         {"<",
          "Attribute \"Name\" was \"<\" [1 characters long], but must be a string at least 2 characters",
          10763,
          {"Name", "2"}},
         {"a<b",
          "Attribute \"Name\" was \"a<b\", but cannot contain these characters: &<",
          10011,
          {"Name"}}});
    const std::string long_text(300, 'x');
    ExpectAll(STRINGApiAttribute("Notes", 20, false, -2147483647, -1, "<>&", "", ""), {"", long_text},
              {{long_text + "&",
                "Attribute \"Notes\" was \"" + long_text + "&\", but cannot contain these characters: <>&",
                10011,
                {"Notes"}}});
    ExpectAll(
        STRINGApiAttribute("Short", 20, false, -1, 0, ""), {""},
        {{"x",
          "Attribute \"Short\" was \"x\" [1 characters long], but must be a string no more than 0 characters",
          10764,
          {"Short", "0"}}});
    ExpectAll(STRINGApiAttribute("Free", 20, false, 0, 0, "<>&", "", ""), {"", "<>&", long_text}, {});
    ExpectAll(INSTANCEIDApiAttribute("InstanceId", 30, false, ""), {"", "<"}, {});
    ExpectAll(
        NAMEApiAttribute("TsName", 25, false, false, 1, -1, ""), {"a", "<&>"},
        {{"",
          "Attribute \"TsName\" was \"\" [0 characters long], but must be a string at least 1 characters",
          10763,
          {"TsName", "1"}}});
}

TEST(AttributeValidation, OtherKindsTakeAnything) {
    EXPECT_TRUE(BOOLEANApiAttribute("B", 20, false, "").Validate("perhaps"));
    EXPECT_TRUE(ENUMApiAttribute("E", 20, false, "").Validate("NoSuchRow"));
    EXPECT_TRUE(IPV4ADDRESSApiAttribute("A", 15, false, "").Validate("nowhere"));
    EXPECT_TRUE(SIZEApiAttribute("S", 20, false, "").Validate("big"));
}

}  // namespace
