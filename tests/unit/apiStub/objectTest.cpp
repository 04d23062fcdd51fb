#include <gmock/gmock.h>

#include "apiMgmt/apiStub/base/apiObjects/base/apiObjectFactory.h"
#include "apiMgmt/apiStub/base/apiObjects/base/methodReturns.h"
#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/common/xmlwrap/xmlParser.h"
#include "tests/unit/apiStub/sampleClasses.h"

namespace {

using testing::ElementsAre;

std::vector<std::string> NamesOf(const ATTRIBUTEList& list) {
    std::vector<std::string> names;
    for (const BASEApiAttribute* attribute : list)
        names.push_back(attribute->GetXmlName());
    return names;
}

TEST(Object, OwnDescriptorsComeBeforeThoseOfTheBase) {
    const sample::Disk disk;
    disk.InitMetaData();
    EXPECT_THAT(NamesOf(disk.GetAttributeList()),
                ElementsAre("Index", "Name", "Status", "ChildStatus", "StatusMessage", "TsName",
                            "TsSerialNumber", "InstanceId", "InstanceName", "ObjectType"));
    EXPECT_EQ(&disk.GetAttributeList(), &sample::Disk().GetAttributeList());
    EXPECT_THAT(
        NamesOf(APIApiMethodReturn().GetAttributeList()),
        ElementsAre("Error", "ErrorCode", "ErrorDetail", "Locale", "LocalizedError", "ReturnObjectEncode",
                    "Successful", "WarningList", "InstanceId", "InstanceName", "ObjectType"));
}

TEST(Object, ANewOneKnowsItsTypeAndIsUp) {
    const sample::Disk disk;
    EXPECT_EQ(
        disk.ToXml(),
        "<TsDisk><Status>Up</Status><ChildStatus>Up</ChildStatus><ObjectType>TsDisk</ObjectType></TsDisk>");
}

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

/** A disk with everything in its texts that a document has to escape. */
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

TEST(Object, ComesBackFromXml) {
    const auto disk = DifficultDisk();
    parser::XMLParser parser;
    ASSERT_TRUE(parser.ParseXMLString(disk->ToXml()));
    const auto copy =
        APIObjectFactory<BASEApiObject>::Instance().Create(parser.GetDocumentElement().GetTagName());
    ASSERT_TRUE(copy);
    for (auto child = parser.GetDocumentElement().GetFirstChild(); child; child = child.GetNextSibling())
        copy->SetAttribute(child.GetTagName(), child.GetText());
    EXPECT_EQ(copy->ToXml(), disk->ToXml());
    EXPECT_EQ(copy->GetAttribute("Name"), disk->GetName());
    EXPECT_EQ(copy->GetAttribute("StatusMessage"), "two\nlines");
}

/** As a client reads the CSV form. */
std::vector<std::map<std::string, std::string>> ReadCsv(const std::string& csv) {
    const auto between = [&](const std::string& from, const std::string& to) {
        const size_t start = csv.find(from) + from.size();
        return csv.substr(start, csv.find(to) - start);
    };
    std::vector<std::string> names;
    Split(between("<Header>", "</Header>"), ",", names);
    std::vector<std::string> rows;
    SplitChar(between("<Data>", "</Data>"), ':', rows);
    std::vector<std::map<std::string, std::string>> objects;
    for (const std::string& row : rows) {
        std::vector<std::string> fields;
        Split(row, ",", fields);
        EXPECT_EQ(fields.size(), names.size());
        auto& object = objects.emplace_back();
        for (size_t i = 0; i < fields.size(); ++i) {
            ReplaceAll(fields[i], "--cl--", ":");
            ReplaceAll(fields[i], "--nl--", "\n");
            ReplaceAll(fields[i], "--cm--", ",");
            object[names.at(i)] = UnescapeXml(fields[i], false);
        }
    }
    return objects;
}

TEST(Object, ComesBackFromCsv) {
    COMPObjectMethodReturn answer(true);
    auto* first = new sample::Disk;
    first->SetName("<a>: \"b\", c");
    auto* second = new sample::Disk;
    second->SetIndex(2);
    second->SetStatusMessage("a & b");
    answer.AssignObjects({first, second});
    const auto objects = ReadCsv(answer.ReturnXml(object_encoding::kCsv));
    ASSERT_EQ(objects.size(), 2u);
    EXPECT_EQ(objects[0].at("Name"), first->GetName());
    EXPECT_EQ(objects[0].at("Index"), "");
    EXPECT_EQ(objects[1].at("Index"), "2");
    EXPECT_EQ(objects[1].at("StatusMessage"), "a & b");
    EXPECT_EQ(objects[1].at("Status"), "Up");
}

TEST(Object, CallsAreLookedUpByName) {
    const sample::Disk disk;
    EXPECT_TRUE(disk.IsMethodChangingState("TsDisk", "Modify"));
    EXPECT_FALSE(disk.IsMethodChangingState("TsDisk", "GetList"));
    EXPECT_FALSE(disk.IsMethodChangingState("TsDisk", "NoSuchCommand"));
    EXPECT_FALSE(disk.IsMethodChangingState("", ""));
}

BASEApiObject* NoDisk() {
    return nullptr;
}

TEST(Factory, KeepsTheLastCreatorOfAName) {
    auto& factory = APIObjectFactory<BASEApiObject>::Instance();
    ASSERT_EQ(&factory, &APIObjectFactory<BASEApiObject>::Instance());
    EXPECT_TRUE(factory.Create("TsDisk"));
    EXPECT_FALSE(factory.Create("tsDisk"));
    EXPECT_FALSE(factory.Create(""));
    EXPECT_EQ(factory.Create("ApiMethodReturn")->GetObjectName(), "ApiMethodReturn");
    factory.Register("TsDisk", NoDisk);
    EXPECT_FALSE(factory.Create("TsDisk"));
    factory.Register("TsDisk", nullptr);
    EXPECT_FALSE(factory.Create("TsDisk"));
    REGISTERClass<BASEApiObject, sample::Disk> again("TsDisk");
    EXPECT_EQ(factory.Create("TsDisk")->GetObjectName(), "TsDisk");
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

    // With its markup escaped once more, as the value of an attribute may be.
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
