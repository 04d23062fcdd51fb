#include <gmock/gmock.h>

#include "apiMgmt/apiStub/base/apiAttributes/apiAttributes.h"

namespace {

constexpr int kOperators[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};

/** Returns the operators with which a value matches a filter. */
std::string PassingOperators(const BASEApiAttribute& attribute, const std::string& text,
                             const std::string& filter) {
    std::string passing;
    for (const int filter_operator : kOperators) {
        if (attribute.MatchesFilter({"X", filter, filter_operator}, text))
            passing += std::to_string(filter_operator);
    }
    return passing;
}

struct Comparison {
    std::string text;
    std::string filter;
    std::string passing;
};

void ExpectAll(const BASEApiAttribute& attribute, const std::vector<Comparison>& comparisons) {
    for (const auto& [text, filter, passing] : comparisons)
        EXPECT_EQ(PassingOperators(attribute, text, filter), passing)
            << attribute.GetXmlName() << " \"" << text << "\" with \"" << filter << "\"";
}

// 2 =, 3 >, 4 >=, 5 <, 6 <=, 7 the value occurs in the filter, 8 the filter occurs in the value
const std::string kEqual = "246";
const std::string kGreater = "34";
const std::string kLess = "56";

TEST(AttributeFilter, Numbers) {
    ExpectAll(INTApiAttribute("Int", 20, false, -1, -1, ""), {{"5", "5", kEqual},
                                                              {"10", "9", kGreater},
                                                              {"9", "10", kLess},
                                                              {"-5", "&hy&5", kEqual},
                                                              {"5 disks", "5", kEqual},
                                                              {"", "0", ""},
                                                              {"0", "", ""}});
    ExpectAll(DOUBLEApiAttribute("Double", 20, false, -1, -1, ""), {{"1.5", "1.5", kEqual},
                                                                    {"1.50004", "1.5", "234"},
                                                                    {"1.49996", "1.5", "256"},
                                                                    {"1.5001", "1.5", kGreater},
                                                                    {"1.4", "1.5", kLess},
                                                                    {"", "1", ""}});
    ExpectAll(BOOLEANApiAttribute("Bool", 20, false, ""), {{"True", "1", "2"},
                                                           {"False", "0", "2"},
                                                           {"yes", "no", "2"},
                                                           {"True", "False", ""},
                                                           {"", "False", ""}});
}

TEST(AttributeFilter, ValueTypes) {
    ExpectAll(DATETIMEApiAttribute("Date", 20, false, ""),
              {{"10/31/2016 01:02:03 PM", "10/31/2016-13:02:03", kEqual},
               {"10/31/2016 01:02:03 PM", "10/31/2016&hy&13:02:03", kEqual},
               {"10/31/2016 01:02:03 PM", "09/30/2017 01:02:03 AM", kLess},
               {"", "10/31/2016 01:02:03 PM", ""}});
    ExpectAll(
        SIZEApiAttribute("Size", 20, false, ""),
        {{"2097152", "1 GB", kEqual}, {"10 KB", "9 KB", kGreater}, {"3", "1 GB", kLess}, {"1", "", ""}});
    ExpectAll(TEMPERATUREApiAttribute("Temperature", 20, false, ""), {{"45 C/113 F", "45 C", kEqual},
                                                                      {"45 C", "112 F", kGreater},
                                                                      {"9 C", "10 C", kLess},
                                                                      {"", "0 C", ""}});
    ExpectAll(VERSIONApiAttribute("Version", 16, false, ""), {{"06.03.01.002", "V6.3.1.2", kEqual},
                                                              {"6.10", "6.9", kGreater},
                                                              {"5.99.99", "6", kLess},
                                                              {"", "6", ""}});
}

TEST(AttributeFilter, Texts) {
    const std::vector<Comparison> texts = {{"Top", "tOP", "24678"},
                                           {"top controller", "Top", "348"},
                                           {"Top", "on top of it", "347"},
                                           {"a-b", "A&hy&B", "24678"},
                                           {"b", "A", kGreater},
                                           {"", "abc", ""},
                                           {"abc", "", ""}};
    ExpectAll(STRINGApiAttribute("String", 20, false, -1, -1, ""), texts);
    ExpectAll(NAMEApiAttribute("Name", 20, false, false, -1, -1, ""), texts);
    ExpectAll(INSTANCEIDApiAttribute("InstanceId", 30, false, ""),
              {{"64702.A", "64702.a", "2"}, {"64702.1", "64702", ""}, {"a-b", "a&hy&b", "2"}, {"", "1", ""}});
    ExpectAll(ENUMApiAttribute("Enum", 20, false, ""),
              {{" Up ", "up\t", "2"}, {"Up", "Down", ""}, {"", "Up", ""}});
}

TEST(AttributeFilter, AddressesAreTextsWithoutAnOrder) {
    for (const auto& attribute :
         {std::shared_ptr<BASEApiAttribute>(new IPV4ADDRESSApiAttribute("V4", 15, false, "")),
          std::shared_ptr<BASEApiAttribute>(new IPV6ADDRESSApiAttribute("V6", 45, false, ""))})
        ExpectAll(*attribute, {{"FE80::1", "fe80::1", "278"},
                               {"10.0.0.1", "10.0.0.1,10.0.0.2", "7"},
                               {"10.0.0.1", "10.0", "8"},
                               {"a-b", "a&hy&b", ""},
                               {"10.0.0.1", "10.0.0.2", ""},
                               {"", "10.0.0.2", ""}});
}

}  // namespace
