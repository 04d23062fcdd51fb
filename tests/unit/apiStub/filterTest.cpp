#include <gmock/gmock.h>

#include "apiMgmt/apiStub/base/apiAttributes/filterList.h"

namespace {

// Formats the join and the items: "1: A 2 x; B 8 y".
std::string Describe(const FILTERList* list) {
    if (list == nullptr) {
        return "null";
    }
    std::string text = std::to_string(list->joinType) + ":";
    for (const FILTERItem& item : list->items) {
        text += " [" + item.name + "|" + std::to_string(item.filterOperator) + "|" + item.value + "]";
    }
    return text;
}

struct FilterCase {
    std::string text;
    std::string items;
    std::string rendered;
};

TEST(Filter, TextToListToText) {
    const FilterCase kCases[] = {
        {"and TsName = top-Index >= 2-", "1: [TsName|2|top] [Index|4|2]", "and TsName = top-Index >= 2-"},
        {"or A = 1-B = 2", "2: [A|2|1] [B|2|2]", "or A = 1-B = 2-"},
        {"and Name = a&hy&b-", "1: [Name|2|a&hy&b]", "and Name = a&hy&b-"},
        {" \tAND A eq 1-B gt 2-C gteq 3-D lt 4-E lteq 5-F iqin 6-G iqs 7- ",
         "1: [A|2|1] [B|3|2] [C|4|3] [D|5|4] [E|6|5] [F|7|6] [G|8|7]",
         "and A = 1-B > 2-C >= 3-D < 4-E <= 5-F iqin 6-G iqs 7-"},
        {"Or A > 1 -- - B <= two words -", "2: [A|3|1] [B|6|two words]", "or A > 1-B <= two words-"},
        {"-Name = abc", "1: [Name|2|abc]", "and Name = abc-"},
        {"and Name like x-A < 1-", "1: [A|5|1]", "and A < 1-"},
        {"and Name like x-", "1:", ""},
        {"and A =-B-", "1:", ""},
        {"-", "1:", ""},
        {"Name = abc", "null", ""},
        {"nor A = 1-", "null", ""},
        {"", "null", ""},
    };
    for (const FilterCase& each : kCases) {
        const auto list = FILTERList::FromText(each.text);
        EXPECT_EQ(Describe(list.get()), each.items) << each.text;
        if (list != nullptr) {
            EXPECT_EQ(list->ToText(), each.rendered) << each.text;
        }
        if (!each.rendered.empty()) {
            EXPECT_EQ(Describe(FILTERList::FromText(each.rendered).get()), each.items) << each.text;
        }
    }
}

TEST(Filter, HyphensAreKeptApartFromThoseBetweenItems) {
    FILTERList list{{}, filter_join::kOr};
    list.Add("Name", filter_operator::kIqs, "a-b--c&hy&d");
    EXPECT_EQ(list.items[0].value, "a&hy&b&hy&&hy&c&hy&d");
    EXPECT_EQ(list.items[0].PlainValue(), "a-b--c-d");
    list.items[0].value = "a-b";
    EXPECT_EQ(list.ToText(), "or Name iqs a&hy&b-");
    list.items.push_back({"Index", "7", filter_operator::kNone});
    list.items.push_back({"Index", "7", 9});
    EXPECT_EQ(list.ToText(), "or Name iqs a&hy&b-");
    list.joinType = filter_join::kUndecided;
    EXPECT_EQ(list.ToText(), "");
}

}  // namespace
