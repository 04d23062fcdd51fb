#include <gmock/gmock.h>

#include "apiMgmt/common/xmlwrap/xmlParser.h"

namespace parser {
namespace {

using namespace std::string_literals;

std::string Repeated(const std::string& text, size_t count) {
    std::string all;
    all.reserve(text.size() * count);
    while (count-- > 0)
        all += text;
    return all;
}

TEST(XmlRefusal, ReportsTheReason) {
    const std::pair<std::string, std::string> cases[] = {
        {"", "empty"},
        {"text", "line 1, column 1: "},
        {"<a>", "no element found"},
        {"<a><b></a></b>", "line 1, column 9: mismatched tag"},
        {"<a/>\n<b/>", "line 2, column 1: junk after document element"},
        {"<a x='1' x='2'/>", "duplicate attribute"},
        {"<a>\0</a>"s, "not well-formed"},
        {"<a>&#0;</a>", "invalid character"},
        {"<a>\xff</a>", "not well-formed"},
        {"<a>\xed\xa0\x80</a>", "not well-formed"},
        {"<a>\xe2\x82", "partial character"},
        {"<a><![CDATA[x</a>", "unclosed CDATA section"},
        {"<?xml version='1.0' encoding='klingon'?><a/>", "unknown encoding"},
        {"<!DOCTYPE a><a/>", "document type"},
        {"<!DOCTYPE a SYSTEM 'file:///etc/passwd'><a/>", "document type"},
        {"<!DOCTYPE a [<!ENTITY e SYSTEM 'file:///etc/passwd'>]><a>&e;</a>", "document type"},
        {"<!DOCTYPE a [<!ENTITY b 'ha'><!ENTITY c '&b;&b;&b;&b;&b;&b;&b;&b;'>"
         "<!ENTITY d '&c;&c;&c;&c;&c;&c;&c;&c;'>]><a>&d;</a>",
         "document type"},
    };
    XMLParser parser;
    for (const auto& [text, reason] : cases) {
        EXPECT_FALSE(parser.ParseXMLString(text)) << text;
        EXPECT_THAT(parser.GetError(), testing::HasSubstr(reason)) << text;
        EXPECT_FALSE(parser.GetDocumentElement()) << text;
        EXPECT_EQ(parser.FindTag("a"), kNoTag) << text;
    }
    EXPECT_TRUE(parser.ParseXMLString("<a/>"));
    EXPECT_TRUE(parser.GetDocumentElement());
}

struct Limit {
    std::string at_the_limit;
    std::string one_beyond;
    std::string reason;
};

std::string Nested(size_t levels) {
    return Repeated("<a>", levels) + "x" + Repeated("</a>", levels);
}

std::string WithElements(size_t count) {
    return "<r>" + Repeated("<a/>", count - 1) + "</r>";
}

std::string WithTags(size_t count) {
    std::string text = "<r>";
    for (size_t i = 1; i < count; ++i)
        text += "<t" + std::to_string(i) + "/>";
    return text + "</r>";
}

std::string WithAttributes(size_t count, size_t elements = 1) {
    std::string text = "<a";
    for (size_t i = 0; i < count; ++i)
        text += " a" + std::to_string(i) + "=''";
    return "<r>" + Repeated(text + "/>", elements) + "</r>";
}

TEST(XmlRefusal, EnforcesLimits) {
    const Limit limits[] = {
        {Nested(128), Nested(129), "nested too deep"},
        {Nested(128), "<a>" + Repeated("<a>", 127) + "<a/>", "nested too deep"},
        {WithElements(4'000'000), WithElements(4'000'001), "too many elements"},
        {WithTags(65'536), WithTags(65'537), "too many different tags"},
        {WithAttributes(256), WithAttributes(257), "too many attributes"},
        {WithAttributes(100, 1000), WithAttributes(100, 1001), "too many attributes"},
        {"<a>" + std::string(3'000'000, 'x') + "</a>", "<a b='" + std::string(3'000'000, 'x') + "'/>",
         "too long"},
    };
    XMLParser parser;
    for (const Limit& limit : limits) {
        EXPECT_TRUE(parser.ParseXMLString(limit.at_the_limit)) << parser.GetError();
        EXPECT_FALSE(parser.ParseXMLString(limit.one_beyond));
        EXPECT_THAT(parser.GetError(), testing::HasSubstr(limit.reason));
    }
}

}  // namespace
}  // namespace parser
