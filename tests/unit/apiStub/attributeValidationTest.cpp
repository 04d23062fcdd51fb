#include <gmock/gmock.h>

#include "apiMgmt/apiStub/base/apiAttributes/apiAttributes.h"
#include "apiMgmt/common/utils/apiMethodError.h"

namespace {

/** A value and its error: the code, the message after the attribute's name, the parameters after the name. */
struct Refusal {
    std::string text;
    int code;
    std::vector<std::string> parameters;
    std::string message;  ///< what follows the attribute's name
};

void ExpectAll(const BASEApiAttribute& attribute, const std::vector<std::string>& good,
               const std::vector<Refusal>& bad) {
    for (const std::string& text : good)
        EXPECT_TRUE(attribute.Validate(text)) << attribute.GetXmlName() << " " << text;
    for (const auto& [text, code, parameters, message] : bad) {
        try {
            attribute.Validate(text);
            ADD_FAILURE() << attribute.GetXmlName() << " took \"" << text << "\"";
        } catch (const APIMethodError& error) {
            EXPECT_EQ(error.GetSummary(), "Attribute \"" + attribute.GetXmlName() + "\" was " + message);
            EXPECT_EQ(error.GetErrorCode(), code) << message;
            EXPECT_EQ(error.GetErrorState(), 4);
            EXPECT_EQ(error.GetParameters(), parameters) << message;
        }
    }
}

const std::string kAtLeast = ", but must be greater than or equal to ";
const std::string kAtMost = ", but must be less than or equal to ";
const std::string kFrom0To128 = kAtLeast + "0 and less than or equal to 128";

TEST(AttributeValidation, Numbers) {
    ExpectAll(INTApiAttribute("Prefix", 20, false, 0, 128, ""), {"0", "128", "", "abc", "7 disks"},
              {{"129", 10760, {"Prefix", "0", "128"}, "129" + kFrom0To128},
               {"-1", 10760, {"Prefix", "0", "128"}, "-1" + kFrom0To128}});
    ExpectAll(INTApiAttribute("Index", 20, false, 0, -1, ""), {"0", "9223372036854775807"},
              {{"-1", 10761, {"Index", "0"}, "-1" + kAtLeast + "0"}});
    ExpectAll(INTApiAttribute("Lun", 20, false, -1, 255, ""), {"255", "-9223372036854775808"},
              {{"256", 10762, {"Lun", "255"}, "256" + kAtMost + "255"}});
    ExpectAll(INTApiAttribute("Any", 20, false, -1, -1, ""), {"-5", "5"}, {});
    ExpectAll(DOUBLEApiAttribute("Share", 20, false, 0, 128, ""), {"0", "128", "99.9"},
              {{"128.5", 10760, {"Share", "0", "128"}, "128.500000" + kFrom0To128}});
    ExpectAll(DOUBLEApiAttribute("Load", 20, false, 1, -1, ""), {"1", "1e30"},
              {{"0.999999", 10761, {"Load", "1"}, "0.999999" + kAtLeast + "1"},
               {"", 10761, {"Load", "1"}, "0.000000" + kAtLeast + "1"}});
    ExpectAll(DOUBLEApiAttribute("Rate", 20, false, -1, 2, ""), {"2", "-7"},
              {{"2.01", 10762, {"Rate", "2"}, "2.010000" + kAtMost + "2"}});
    // The first invalid item of a list.
    ExpectAll(INTARRAYApiAttribute("Luns", 20, false, 0, 128, ""), {"", "0 128 5"},
              {{"5 129 -1", 10760, {"Luns", "0", "128"}, "129" + kFrom0To128}});
    ExpectAll(INTARRAYApiAttribute("Luns", 20, false, 1, -1, ""), {},
              {{"5 0", 10761, {"Luns", "1"}, "0" + kAtLeast + "1"}});
    ExpectAll(INTARRAYApiAttribute("Luns", 20, false, -1, 9, ""), {},
              {{"10", 10762, {"Luns", "9"}, "10" + kAtMost + "9"}});
}

TEST(AttributeValidation, Strings) {
    const std::string short_end = " characters long], but must be a string at least 2 characters";
    const std::string long_end = " characters long], but must be a string no more than 4 characters";
    ExpectAll(STRINGApiAttribute("Name", 20, false, 2, 4, "&<", "", ""), {"ab", "abcd", "a>b"},
              {{"a", 10763, {"Name", "2"}, "\"a\" [1" + short_end},
               {"", 10763, {"Name", "2"}, "\"\" [0" + short_end},
               {"abcde", 10764, {"Name", "4"}, "\"abcde\" [5" + long_end},
               // Four letters, five bytes.
               {"abc\xc3\xa4", 10764, {"Name", "4"}, "\"abc\xc3\xa4\" [5" + long_end},
               // The length is checked before the characters.
               {"<", 10763, {"Name", "2"}, "\"<\" [1" + short_end},
               {"a<b", 10011, {"Name"}, "\"a<b\", but cannot contain these characters: &<"}});
    const std::string long_text(300, 'x');
    ExpectAll(STRINGApiAttribute("Notes", 20, false, -2147483647, -1, "<>&", "", ""), {"", long_text},
              {{long_text + "&",
                10011,
                {"Notes"},
                "\"" + long_text + "&\", but cannot contain these characters: <>&"}});
    ExpectAll(STRINGApiAttribute("Free", 20, false, 0, 0, "<>&", "", ""), {"", "<>&", long_text}, {});
    ExpectAll(NAMEApiAttribute("TsName", 25, false, false, 2, -1, ""), {"<&>"},
              {{"", 10763, {"TsName", "2"}, "\"\" [0" + short_end}});
}

}  // namespace
