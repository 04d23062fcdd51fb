#include <gmock/gmock.h>

#include "apiMgmt/apiStub/base/apiObjects/base/methodReturns.h"
#include "apiMgmt/common/utils/stringUtil.h"
#include "tests/unit/apiStub/sampleClasses.h"

namespace {

TEST(Object, SetAttributeIgnoresWhatItShould) {
    sample::Disk disk;
    disk.SetAttribute("", "x");
    disk.SetAttribute("Name", "", false);
    EXPECT_FALSE(disk.HasAttribute("Name"));
    disk.SetAttribute("Name", "a", false);
    disk.SetAttribute("Name", "", false);
    EXPECT_EQ(disk.GetAttribute("Name"), "a");
    disk.SetAttribute("Name", "", true);
    std::string text = "untouched";
    EXPECT_TRUE(disk.GetAttribute("Name", text));
    EXPECT_EQ(text, "");
    text = "untouched";
    EXPECT_FALSE(disk.GetAttribute("Notes", text));
    EXPECT_EQ(text, "untouched");

    disk.SetStatus(3);
    EXPECT_EQ(disk.GetStatus(), "Degraded");
    disk.SetStatus(99);
    EXPECT_TRUE(disk.GetAttribute("Status", text));
    EXPECT_EQ(text, "");
}

/** Returns a disk whose values contain everything that a document must escape. */
std::unique_ptr<sample::Disk> DifficultDisk() {
    auto disk = std::make_unique<sample::Disk>();
    disk->SetIndex(17);
    disk->SetName("<a> & \"b\", 'c': d--cm--");
    disk->SetStatusMessage("two\nlines");
    disk->SetAttribute("Undescribed", "not written as XML");
    return disk;
}

TEST(Object, XmlHoldsTheDescribedAttributesInTheirOrder) {
    EXPECT_EQ(DifficultDisk()->ToXml(),
              "<TsDisk><Index>17</Index><Name>&lt;a&gt; &amp; &quot;b&quot;, &apos;c&apos;: d--cm--</Name>"
              "<Status>Up</Status><ChildStatus>Up</ChildStatus><StatusMessage>two&#x0a;lines</StatusMessage>"
              "<ObjectType>TsDisk</ObjectType></TsDisk>");

    sample::AsyncTask task;
    task.SetInstanceName("<b>1, 2</b>\n");
    EXPECT_EQ(task.ToXml(),
              "<asynctask><InstanceName><b>1, "
              "2</b>\n</InstanceName><ObjectType>asynctask</ObjectType></asynctask>");
}

TEST(Object, CsvHoldsAllAttributesByName) {
    EXPECT_EQ(
        DifficultDisk()->DataText(),
        "<Header>ChildStatus,Index,Name,ObjectType,Status,StatusMessage,Undescribed</Header><Data>"
        "Up,17,&lt;a&gt; &amp; &quot;b&quot;--cm-- &apos;c&apos;--cl-- d--cm--,TsDisk,Up,two&#x0a;lines,"
        "not written as XML</Data>");
    EXPECT_EQ(BASEApiObject::EncodeCsvValue("a,b\nc:d"), "a--cm--b--nl--c--cl--d");

    sample::AsyncTask task;
    task.SetInstanceName("<b>1, 2</b>\n:");
    EXPECT_EQ(task.DataRow({"InstanceName", "Nothing", "ObjectType"}),
              "<b>1--cm-- 2</b>--nl----cl--,,asynctask");

    std::vector<BASEApiObject*> objects = {&task};
    const auto disk = DifficultDisk();
    objects.push_back(disk.get());
    EXPECT_EQ(
        BASEApiObject::HeaderText(BASEApiObject::MergeAttributeNames(objects)),
        "<Header>ChildStatus,Index,InstanceName,Name,ObjectType,Status,StatusMessage,Undescribed</Header>");
    EXPECT_EQ(BASEApiObject::HeaderText({}), "<Header></Header>");
}

// ---- Method objects ----

TEST(MethodObject, ComesBackFromItsElement) {
    sample::HistoricalFilter filter;
    filter.SetAttribute("", "x");
    filter.SetAttribute("FilterTime", "a & \"b\" > 'c'");
    filter.SetAttribute("MaxCountReturn", "10");
    EXPECT_EQ(filter.ToXml(false),
              "<HistoricalFilter><FilterTime>a & \"b\" > 'c'</FilterTime><MaxCountReturn>10</MaxCountReturn>"
              "</HistoricalFilter>");
    EXPECT_EQ(filter.ToXml(true),
              "<HistoricalFilter><FilterTime>a &amp; &quot;b&quot; &gt; &apos;c&apos;</FilterTime>"
              "<MaxCountReturn>10</MaxCountReturn></HistoricalFilter>");

    // With its markup escaped again, like the value of an attribute.
    for (const std::string& text : {filter.ToXml(true), EscapeXml(filter.ToXml(true), true)}) {
        sample::HistoricalFilter copy;
        copy.FromXmlText(text);
        EXPECT_EQ(copy.ToXml(false), filter.ToXml(false)) << text;
    }
}

TEST(MethodObject, AForeignTextChangesNothing) {
    sample::HistoricalFilter filter;
    filter.SetAttribute("MaxCountReturn", "10");
    for (const char* text :
         {"", "no markup", "<HistoricalFilter>", "<Other><MaxCountReturn>1</MaxCountReturn></Other>",
          "<!DOCTYPE x [<!ENTITY e \"1\">]><HistoricalFilter>&e;</HistoricalFilter>"})
        filter.FromXmlText(text);
    EXPECT_EQ(filter.GetAttribute("MaxCountReturn"), "10");
    EXPECT_EQ(filter.GetAttributes().Size(), 1u);

    filter.FromXmlText(
        "<historicalFILTER><MaxCountReturn>5</MaxCountReturn><More><X>1</X></More><FilterTime/></"
        "historicalFILTER>");
    EXPECT_EQ(filter.GetAttribute("MaxCountReturn"), "5");
    EXPECT_EQ(filter.GetAttribute("More"), "<X>1</X>");
    EXPECT_TRUE(filter.HasAttribute("FilterTime"));
}

}  // namespace
