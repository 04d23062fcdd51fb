#include "apiMgmt/common/utils/stringUtil.h"

#include <gmock/gmock.h>

#include <clocale>
#include <cstring>

using testing::ElementsAre;
using testing::IsEmpty;

TEST(StringUtil, SafeStrncpyNeverWritesBehindSizeAndAlwaysEndsTheText) {
    const struct {
        const char* source;
        size_t size;
        const char* expected;  // whole buffer, which starts as "######"
    } cases[] = {
        {"abc", 6, "abc\0##"}, {"abcde", 6, "abcde\0"}, {"abcdef", 6, "abcde\0"}, {"abc", 4, "abc\0##"},
        {"abc", 3, "ab\0###"}, {"abc", 1, "\0#####"},   {nullptr, 6, "\0#####"},  {"", 6, "\0#####"},
        {"abc", 0, "######"},  {nullptr, 0, "######"},
    };
    for (const auto& c : cases) {
        char buffer[6];
        memset(buffer, '#', sizeof buffer);
        EXPECT_EQ(SafeStrncpy(buffer, c.source, c.size), buffer);
        EXPECT_EQ(memcmp(buffer, c.expected, sizeof buffer), 0) << (c.source ? c.source : "null") << c.size;
    }
}

TEST(StringUtil, SafeStrncpyDoesNotNeedTheEndOfALongSource) {
    const char unterminated[3] = {'a', 'b', 'c'};
    char buffer[3];
    EXPECT_STREQ(SafeStrncpy(buffer, unterminated, sizeof buffer), "ab");
}

TEST(StringUtil, FormatStringKeepsTextsAroundTheFirstBuffersSize) {
    for (const size_t length : {0, 1, 98, 99, 100, 101, 5000}) {
        const std::string text(length, 'x');
        EXPECT_EQ(FormatString("%s", text.c_str()), text);
        EXPECT_EQ(FormatString("%s|%d", text.c_str(), 42), text + "|42");  // values read twice
    }
}

TEST(StringUtil, FormatStringNamesAFormatThatFails) {
    setlocale(LC_ALL, "C");
    const wchar_t not_in_the_c_locale[] = {0x20ac, 0};
    EXPECT_EQ(FormatString("<%ls>", not_in_the_c_locale), "Error in format string: \"<%ls>\"");
}

TEST(StringUtil, TrimTakesAllSixKindsOfWhiteSpaceAtItsEnds) {
    const struct {
        const char *text, *both, *left, *right;
    } cases[] = {
        {" \f\n\r\t\va b \f\n\r\t\v", "a b", "a b \f\n\r\t\v", " \f\n\r\t\va b"},
        {" \t\n", "", "", ""},
        {"", "", "", ""},
        {"a", "a", "a", "a"},
        {" a", "a", "a", " a"},
        {"a ", "a", "a ", "a"},
        {"\x01 \xa0", "\x01 \xa0", "\x01 \xa0", "\x01 \xa0"},
    };
    for (const auto& c : cases) {
        std::string both = c.text, left = c.text, right = c.text;
        Trim(both);
        TrimLeft(left);
        TrimRight(right);
        EXPECT_EQ(both, c.both);
        EXPECT_EQ(left, c.left);
        EXPECT_EQ(right, c.right);
    }
}

TEST(StringUtil, LetterCaseIsThatOfTheCLocale) {
    EXPECT_EQ(ToLower("AZ@[`{ \xc4\xd6"), "az@[`{ \xc4\xd6");
    const struct {
        const char *left, *right;
        int sign;
    } cases[] = {
        {"", "", 0},       {"", "a", -1},       {"aB", "Ab", 0},
        {"ab", "ABC", -1}, {"b", "A", 1},       {"_", "A", -1},  // 'a' counts, not 'A'
        {"\xe4", "z", 1},  {"\xe4", "\xc4", 1},
    };
    for (const auto& c : cases) {
        const int forth = CompareNoCase(c.left, c.right);
        EXPECT_EQ((forth > 0) - (forth < 0), c.sign) << c.left << " " << c.right;
        EXPECT_EQ(forth, -CompareNoCase(c.right, c.left));
    }
    EXPECT_NE(CompareNoCase(std::string("a\0b", 3), "a"), 0);
}

TEST(StringUtil, ParseIntSaturatesAndParseBoolTakesOneOrTrue) {
    const struct {
        const char* text;
        int number;
        bool truth;
    } cases[] = {
        {"", 0, false},
        {"true", 0, true},
        {"TrUe", 0, true},
        {" true", 0, false},
        {"trues", 0, false},
        {"1", 1, true},
        {" +01x", 1, true},
        {"1.9", 1, true},
        {"-1", -1, false},
        {"2", 2, false},
        {"x1", 0, false},
        {"- 1", 0, false},
        {"2147483647", 2147483647, false},
        {"2147483648", 2147483647, false},
        {"4294967297", 2147483647, false},  // 1 when cut to 32 bits
        {"-2147483649", -2147483647 - 1, false},
        {"-99999999999999999999999999", -2147483647 - 1, false},
        {"99999999999999999999999999", 2147483647, false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(ParseInt(c.text), c.number) << c.text;
        EXPECT_EQ(ParseBool(c.text), c.truth) << c.text;
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
    const struct {
        const char *text, *old_text, *new_text, *expected;
    } cases[] = {
        {"a-b-c", "-", "--", "a--b--c"},
        {"aaaa", "aa", "a", "aa"},
        {"aaa", "aa", "b", "ba"},
        {"abc", "abc", "", ""},
        {"abc", "x", "y", "abc"},
        {"abc", "", "y", "abc"},
        {"", "x", "y", ""},
    };
    for (const auto& c : cases) {
        std::string text = c.text;
        ReplaceAll(text, c.old_text, c.new_text);
        EXPECT_EQ(text, c.expected);
    }
    std::string whole = "ab";
    ReplaceAll(whole, whole, whole);
    EXPECT_EQ(whole, "ab");
}

TEST(StringUtil, SplitKeepsTheEmptyLastPieceAndObeysItsLimit) {
    const struct {
        const char *text, *delimiter;
        size_t limit;
        std::vector<std::string> expected;
    } cases[] = {
        {"", ",", 0, {}},
        {"a", ",", 0, {"a"}},
        {"a,b", ",", 0, {"a", "b"}},
        {"a,", ",", 0, {"a", ""}},
        {",", ",", 0, {"", ""}},
        {",,a", ",", 0, {"", "", "a"}},
        {"a<>b<c", "<>", 0, {"a", "b<c"}},
        {"a<", "<>", 0, {"a<"}},
        {"a,b,c", ",", 1, {"a,b,c"}},
        {"a,b,c", ",", 2, {"a", "b,c"}},
        {"a,b,c", ",", 3, {"a", "b", "c"}},
        {"a,b,c", ",", 9, {"a", "b", "c"}},
        {"a,", ",", 2, {"a", ""}},
        {"a,b,", ",", 2, {"a", "b,"}},
        {"ab", "", 0, {"ab"}},
    };
    for (const auto& c : cases) {
        std::vector<std::string> pieces = {"old"};
        Split(c.text, c.delimiter, pieces, c.limit);
        EXPECT_EQ(pieces, c.expected) << c.text << " limit " << c.limit;
    }
}

TEST(StringUtil, SplitCharDropsTheEmptyLastPiece) {
    const struct {
        const char* text;
        std::vector<std::string> expected;
    } cases[] = {
        {"", {}}, {"a", {"a"}}, {"a|", {"a"}}, {"|", {""}}, {"||", {"", ""}}, {"|a||b|", {"", "a", "", "b"}},
    };
    for (const auto& c : cases) {
        std::vector<std::string> pieces = {"old"};
        SplitChar(c.text, '|', pieces);
        EXPECT_EQ(pieces, c.expected) << c.text;
    }
}

TEST(StringUtil, APieceCanItselfBeSplitIntoItsVector) {
    std::vector<std::string> pieces = {"a,b", "c"};
    Split(pieces[0], ",", pieces);
    EXPECT_THAT(pieces, ElementsAre("a", "b"));
    pieces = {"a,b", "c"};
    SplitChar(pieces[0], ',', pieces);
    EXPECT_THAT(pieces, ElementsAre("a", "b"));
}
