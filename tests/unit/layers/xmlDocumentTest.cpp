#include <gmock/gmock.h>

#include "apiMgmt/common/xmlwrap/xmlParser.h"

namespace parser {
namespace {

using namespace std::string_literals;

std::vector<std::string> Contents(const std::vector<XMLElement>& elements) {
    std::vector<std::string> contents;
    for (const XMLElement& element : elements)
        contents.push_back(element.GetElementContent());
    return contents;
}

TEST(XmlDocument, FindsChildrenByExactTagInDocumentOrder) {
    XMLParser parser;
    ASSERT_TRUE(
        parser.ParseXMLString("<lumapi><Disk>1</Disk><disk>2</disk> <Disk><Disk>deep</Disk></Disk>"
                              "<Diskette>3</Diskette><Disk/></lumapi>"))
        << parser.GetError();
    const XMLElement root = parser.GetDocumentElement();
    EXPECT_EQ(root.GetTagName(), "lumapi");
    EXPECT_THAT(Contents(root.GetChildElemsByTagName("Disk")),
                testing::ElementsAre("1", "<Disk>deep</Disk>", ""));
    EXPECT_THAT(Contents(root.GetChildElemsByTagName("disk")), testing::ElementsAre("2"));
    EXPECT_THAT(root.GetChildElemsByTagName("DISK"), testing::IsEmpty());
    EXPECT_THAT(root.GetChildElemsByTagName("lumapi"), testing::IsEmpty());
    EXPECT_EQ(root.GetFirstChildByTagName("Diskette").GetText(), "3");
    EXPECT_FALSE(root.GetFirstChildByTagName("DISK"));
    EXPECT_EQ(root.GetFirstChild().GetTag(), parser.FindTag("Disk"));
    EXPECT_FALSE(root.GetNextSibling());
}

TEST(XmlDocument, ContentOfTheDocumentElement) {
    const std::pair<std::string, std::string> cases[] = {
        {"<a>x</a>", "x"},
        {"<a/>", ""},
        {"<a>&lt;b&gt; &amp; &apos;&quot;</a>", "<b> & '\""},
        {"<a>&#65;&#x42;&#8364;&#xD;</a>", "AB\xe2\x82\xac\r"},
        {"<a>1\r\n2\r3</a>", "1\n2\n3"},
        {"<a><![CDATA[<b>]] > &amp;]]>]</a>", "<b>]] > &amp;]"},
        {"<a>1<!-- <b> -->2<?pi <c> ?>3</a>", "123"},
        {"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!-- c -->\n<a>t</a>\n<?end?>\n", "t"},
        {"\xef\xbb\xbf<a>\xc3\xa4</a>", "\xc3\xa4"},
        {"<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a>\xe4</a>", "\xc3\xa4"},
        {"\xff\xfe<\0a\0>\0\xac\x20<\0/\0a\0>\0"s, "\xe2\x82\xac"},
        {"\xfe\xff\0<\0a\0>\x20\xac\0<\0/\0a\0>"s, "\xe2\x82\xac"},
        // Text before, between and after child elements is dropped.
        {"<a>drop<b>1</b>drop<c/>drop</a>", "<b>1</b><c></c>"},
        // Escaped markup stays text.
        {"<a><b>&lt;i&gt;&amp;amp;&#13;</b></a>", "<b>&lt;i&gt;&amp;amp;&#13;</b>"},
    };
    XMLParser parser;
    for (const auto& [text, content] : cases) {
        EXPECT_TRUE(parser.ParseXMLString(text)) << text << ": " << parser.GetError();
        EXPECT_EQ(parser.GetError(), "");
        EXPECT_EQ(parser.GetDocumentElement().GetTagName(), "a") << text;
        EXPECT_EQ(parser.GetDocumentElement().GetElementContent(), content) << text;
    }
}

TEST(XmlDocument, TheCallersEncodingOverridesTheDocuments) {
    XMLParser parser("ISO-8859-1");
    ASSERT_TRUE(parser.ParseXMLString("<?xml version='1.0' encoding='UTF-8'?><a>\xe4</a>"));
    EXPECT_EQ(parser.GetDocumentElement().GetText(), "\xc3\xa4");
}

}  // namespace
}  // namespace parser
