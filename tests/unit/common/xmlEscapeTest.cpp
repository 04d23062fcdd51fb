#include <gtest/gtest.h>

#include "apiMgmt/common/utils/stringUtil.h"

TEST(XmlEscape, EscapesByTheFlag) {
    const struct {
        std::string text, all, angle_brackets_only;
    } cases[] = {
        {"", "", ""},
        {"<a>", "&lt;a&gt;", "&lt;a&gt;"},
        {"&'\"", "&amp;&apos;&quot;", "&'\""},
        {"&lt;", "&amp;lt;", "&lt;"},
        {"a\tb\x1f", "a&#x0a;b&#x0a;", "a\tb\x1f"},
        {std::string("\0\n", 2), "&#x0a;&#x0a;", std::string("\0\n", 2)},
        {" \x7f\x80\xc3\xa4\xff", " \x7f\x80\xc3\xa4\xff", " \x7f\x80\xc3\xa4\xff"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(EscapeXml(c.text, false), c.all);
        EXPECT_EQ(EscapeXml(c.text, true), c.angle_brackets_only);
    }
}

TEST(XmlEscape, UnescapesOnceAndLeavesCharacterReferences) {
    const struct {
        const char *text, *all, *angle_brackets_only;
    } cases[] = {
        {"&lt;a&gt;", "<a>", "<a>"},
        {"&amp;&apos;&quot;", "&'\"", "&amp;&apos;&quot;"},
        {"&amp;lt;", "&lt;", "&amp;lt;"},
        {"&#x0a;&#60;", "&#x0a;&#60;", "&#x0a;&#60;"},
        {"&lt", "&lt", "&lt"},
        {"&LT;", "&LT;", "&LT;"},
        {"&&lt;&", "&<&", "&<&"},
        {"", "", ""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(UnescapeXml(c.text, false), c.all);
        EXPECT_EQ(UnescapeXml(c.text, true), c.angle_brackets_only);
    }
}
