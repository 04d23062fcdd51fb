#include <gtest/gtest.h>

#include "apiMgmt/common/utils/stringUtil.h"

TEST(XmlEscape, EscapesByTheFlag) {
    const std::tuple<std::string, std::string, std::string> cases[] = {
        {"", "", ""},
        {"<a>", "&lt;a&gt;", "&lt;a&gt;"},
        {"&'\"", "&amp;&apos;&quot;", "&'\""},
        {"a\tb\x1f", "a&#x0a;b&#x0a;", "a\tb\x1f"},
        {std::string("\0\n", 2), "&#x0a;&#x0a;", std::string("\0\n", 2)},
        {" \x7f\x80\xc3\xa4\xff", " \x7f\x80\xc3\xa4\xff", " \x7f\x80\xc3\xa4\xff"},
    };
    for (const auto& [text, all, angle_brackets_only] : cases) {
        EXPECT_EQ(EscapeXml(text, false), all);
        EXPECT_EQ(EscapeXml(text, true), angle_brackets_only);
    }
}

TEST(XmlEscape, UnescapesOnceAndLeavesCharacterReferences) {
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"&lt;a&gt;", "<a>", "<a>"},
        {"&amp;&apos;&quot;", "&'\"", "&amp;&apos;&quot;"},
        {"&amp;lt;", "&lt;", "&amp;lt;"},
        {"&#x0a;&#60;", "&#x0a;&#60;", "&#x0a;&#60;"},
        {"&lt", "&lt", "&lt"},
        {"&&lt;&", "&<&", "&<&"},
        {"", "", ""},
    };
    for (const auto& [text, all, angle_brackets_only] : cases) {
        EXPECT_EQ(UnescapeXml(text, false), all);
        EXPECT_EQ(UnescapeXml(text, true), angle_brackets_only);
    }
}
