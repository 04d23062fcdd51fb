#include "apiMgmt/common/utils/stringUtil.h"

#include <gmock/gmock.h>

#include <cstring>

TEST(StringUtil, SafeStrncpyNeverWritesBehindSizeAndAlwaysEndsTheText) {
    const std::tuple<const char*, size_t, const char*> cases[] = {
        {"abc", 6, "abc\0##"},   {"abcdef", 6, "abcde\0"}, {"abc", 3, "ab\0###"},  {"abc", 1, "\0#####"},
        {nullptr, 6, "\0#####"}, {"abc", 0, "######"},     {nullptr, 0, "######"},
    };
    for (const auto& [source, size, expected] : cases) {
        char buffer[6];
        memset(buffer, '#', sizeof buffer);
        EXPECT_EQ(SafeStrncpy(buffer, source, size), buffer);
        EXPECT_EQ(memcmp(buffer, expected, sizeof buffer), 0) << (source ? source : "null") << size;
    }
}

TEST(StringUtil, FormatStringKeepsTextsAroundTheFirstBuffersSize) {
    for (const size_t length : {0, 1, 98, 99, 100, 101, 5000}) {
        const std::string text(length, 'x');
        EXPECT_EQ(FormatString("%s", text.c_str()), text);
        EXPECT_EQ(FormatString("%s|%d", text.c_str(), 42), text + "|42");  // values read twice
    }
}

TEST(StringUtil, TrimTakesAllSixKindsOfWhiteSpaceAtItsEnds) {
    const std::tuple<const char*, const char*, const char*, const char*> cases[] = {
        {" \f\n\r\t\va b \f\n\r\t\v", "a b", "a b \f\n\r\t\v", " \f\n\r\t\va b"},
        {"", "", "", ""},
        {"a", "a", "a", "a"},
        {"\x01 \xa0", "\x01 \xa0", "\x01 \xa0", "\x01 \xa0"},
    };
    for (const auto& [text, each_both, each_left, each_right] : cases) {
        std::string both = text, left = text, right = text;
        Trim(both);
        TrimLeft(left);
        TrimRight(right);
        EXPECT_EQ(both, each_both);
        EXPECT_EQ(left, each_left);
        EXPECT_EQ(right, each_right);
    }
}

TEST(StringUtil, LetterCaseIsThatOfTheCLocale) {
    EXPECT_EQ(ToLower("AZ@[`{ \xc4\xd6"), "az@[`{ \xc4\xd6");
    const std::tuple<const char*, const char*, int> cases[] = {
        {"", "", 0},      {"", "a", -1},       {"aB", "Ab", 0}, {"_", "A", -1},  // 'a' counts, not 'A'
        {"\xe4", "z", 1}, {"\xe4", "\xc4", 1},
    };
    for (const auto& [left, right, sign] : cases) {
        const int forth = CompareNoCase(left, right);
        EXPECT_EQ((forth > 0) - (forth < 0), sign) << left << " " << right;
        EXPECT_EQ(forth, -CompareNoCase(right, left));
    }
    EXPECT_NE(CompareNoCase(std::string("a\0b", 3), "a"), 0);
}

TEST(StringUtil, ParseBoolTakesOneOrTrue) {
    for (const char* good : {"true", "TrUe", "1", " +01x", "1.9"}) {
        EXPECT_TRUE(ParseBool(good)) << good;
    }
    for (const char* bad :
         {"", "trues", "-1", "- 1", "0", "4294967297"}) {  // the last is 1 if truncated to 32 bits
        EXPECT_FALSE(ParseBool(bad)) << bad;
    }
}

TEST(StringUtil, IsNumericWantsOneWholeNumber) {
    for (const char* good : {"0", " -1.5e3\n", "+.5", "5.", "00012", "1e999"}) {
        EXPECT_TRUE(IsNumeric(good)) << good;
    }
    for (const char* bad : {"", " ", "abc", "1a", "1 2", "1e", "-", ".", "1,5", "--1"}) {
        EXPECT_FALSE(IsNumeric(bad)) << bad;
    }
    EXPECT_FALSE(IsNumeric(std::string("1\0a", 3)));
}

TEST(StringUtil, ReplaceAllDoesNotSearchWhatItInserted) {
    const std::tuple<const char*, const char*, const char*, const char*> cases[] = {
        {"a-b-c", "-", "--", "a--b--c"}, {"aaaa", "aa", "a", "aa"}, {"abc", "x", "y", "abc"},
        {"abc", "", "y", "abc"},         {"", "x", "y", ""},
    };
    for (const auto& [each_text, old_text, new_text, expected] : cases) {
        std::string text = each_text;
        ReplaceAll(text, old_text, new_text);
        EXPECT_EQ(text, expected);
    }
    std::string whole = "ab";
    ReplaceAll(whole, whole, whole);
    EXPECT_EQ(whole, "ab");
}

TEST(StringUtil, SplitKeepsTheEmptyLastPieceAndObeysItsLimit) {
    const std::tuple<const char*, const char*, size_t, std::vector<std::string>> cases[] = {
        {"", ",", 0, {}},
        {"a,b", ",", 0, {"a", "b"}},
        {"a,", ",", 0, {"a", ""}},
        {",,a", ",", 0, {"", "", "a"}},
        {"a<>b<c", "<>", 0, {"a", "b<c"}},
        {"a,b,c", ",", 1, {"a,b,c"}},
        {"a,b,c", ",", 2, {"a", "b,c"}},
        {"a,b,c", ",", 3, {"a", "b", "c"}},
        {"a,b,", ",", 2, {"a", "b,"}},
        {"ab", "", 0, {"ab"}},
    };
    for (const auto& [text, delimiter, limit, expected] : cases) {
        std::vector<std::string> pieces = {"old"};
        Split(text, delimiter, pieces, limit);
        EXPECT_EQ(pieces, expected) << text << " limit " << limit;
    }
}

TEST(StringUtil, SplitCharDropsTheEmptyLastPiece) {
    const std::pair<const char*, std::vector<std::string>> cases[] = {
        {"", {}}, {"a", {"a"}}, {"a|", {"a"}}, {"|", {""}}, {"||", {"", ""}}, {"|a||b|", {"", "a", "", "b"}},
    };
    for (const auto& [text, expected] : cases) {
        std::vector<std::string> pieces = {"old"};
        SplitChar(text, '|', pieces);
        EXPECT_EQ(pieces, expected) << text;
    }
}
