#include <gmock/gmock.h>

#include <sstream>

#include "apiMgmt/apiStub/base/apiObjects/base/methodReturns.h"
#include "tests/unit/apiStub/sampleClasses.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

sample::Disk* NewDisk(int64_t index, const std::string& name) {
    auto* disk = new sample::Disk;
    disk->SetIndex(index);
    disk->SetName(name);
    return disk;
}

std::string XmlOfDisk(const std::string& index, const std::string& name) {
    return "<TsDisk><Index>" + index + "</Index><Name>" + name +
           "</Name><Status>Up</Status><ChildStatus>Up</ChildStatus><ObjectType>TsDisk</ObjectType></TsDisk>";
}

TEST(Return, WritesItsResult) {
    EXPECT_EQ(BASEApiMethodReturn().ReturnXml(1), "");
    EXPECT_EQ(BOOLMethodReturn(true).ReturnXml(1), "<ReturnBool>True</ReturnBool>");
    EXPECT_EQ(BOOLMethodReturn(false).ReturnXml(2), "<ReturnBool>False</ReturnBool>");
    EXPECT_EQ(INTMethodReturn(INT32_MIN).ReturnXml(1), "<ReturnInt>-2147483648</ReturnInt>");
    EXPECT_EQ(STRINGMethodReturn("a<b\n").ReturnXml(1), "<ReturnString>a&lt;b&#x0a;</ReturnString>");
    EXPECT_EQ(ENUMMethodReturn("Up").ReturnXml(1), "<ReturnEnum>Up</ReturnEnum>");
    EXPECT_EQ(ENUMMaskMethodReturn("<x/>").ReturnXml(1), "<ReturnEnumMask><x/></ReturnEnumMask>");
}

TEST(Return, WritesTheWholeDocument) {
    BOOLMethodReturn answer(true);
    const std::string head =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<lumapi><ApiMethodReturn><Error></Error>"
        "<ErrorCode>None</ErrorCode><ErrorDetail></ErrorDetail><LocalizedError></LocalizedError>";
    const std::string tail =
        "<Successful>True</Successful><ObjectType>ApiMethodReturn</ObjectType></ApiMethodReturn>"
        "<ReturnBool>True</ReturnBool></lumapi>";
    EXPECT_EQ(answer.GenerateResponseXml(1), head + "<ReturnObjectEncode>Xml</ReturnObjectEncode>" + tail);
    EXPECT_EQ(answer.GenerateResponseXml(2), head + "<ReturnObjectEncode>Csv</ReturnObjectEncode>" + tail);
    answer.SetWarningList({"a:b", "c"});
    answer.SetLocale(1);
    EXPECT_THAT(answer.GenerateResponseXml(1), HasSubstr("<WarningList>a-co-b:c</WarningList>"));
    EXPECT_FALSE(answer.GetLocale().empty());

    BASEApiMethodReturn failure(false, 4, "it <failed>", "es ist", "detail", nullptr);
    EXPECT_EQ(
        failure.GenerateResponseXml(1),
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<lumapi><ApiMethodReturn>"
        "<Error>it &lt;failed&gt;</Error><ErrorCode>ParsingError</ErrorCode><ErrorDetail>detail</ErrorDetail>"
        "<LocalizedError>es ist</LocalizedError><ReturnObjectEncode>Xml</ReturnObjectEncode>"
        "<Successful>False</Successful><ObjectType>ApiMethodReturn</ObjectType></ApiMethodReturn></lumapi>");
}

TEST(Return, TellsPeopleWhatHappened) {
    const auto text_of = [](const BASEApiMethodReturn& answer) {
        std::ostringstream stream;
        answer.ToStream(stream);
        return stream.str();
    };
    EXPECT_EQ(text_of(BASEApiMethodReturn()), "success=1\n");
    EXPECT_EQ(text_of(BASEApiMethodReturn(true, new sample::DiskModify)),
              "success=1\nmethod name=Modify\nobject name=TsDisk\n");
    EXPECT_EQ(text_of(BASEApiMethodReturn(false, 25, "bad value", "", "", nullptr)),
              "success=0\nerror code=25\nerror message=bad value\n");
    EXPECT_EQ(text_of(BASEApiMethodReturn(false, 999, "odd", "", "", new sample::DiskEnclosure)),
              "success=0\nerror code=999\nerror message=odd\nmethod name=Enclosure\nobject name=TsDisk\n");
}

TEST(Return, ReadsTheRowsOfAMask) {
    const auto describe = [](const std::string& content) {
        std::string rows;
        for (const auto& row : ENUMMaskMethodReturn(content).GetRows())
            rows += std::to_string(row.Value) + "/" + row.Description + "/" + row.UiString + ";";
        return rows;
    };
    const std::string good =
        "<Row><Value>2</Value><Description>Iscsi</Description><UiString>i &amp; S</UiString></Row>";
    EXPECT_EQ(describe(good), "2/Iscsi/i & S;");
    EXPECT_EQ(describe(good + "<Other><Description>Sas</Description><Value>8</Value></Other>"),
              "2/Iscsi/i & S;8/Sas/;");
    EXPECT_EQ(describe("<Row><Value/><Description>A</Description></Row><Row><Value>1</Value></Row>" + good),
              "2/Iscsi/i & S;");
    EXPECT_EQ(describe("<Row><Value>many</Value><Description>A</Description></Row>"), "0/A/;");
    for (const char* content : {"", "a text", "<Row>", "</ReturnEnumMask><ReturnEnumMask>", "a & b"})
        EXPECT_EQ(describe(content), "") << content;
}

TEST(Return, OneObject) {
    COMPObjectMethodReturn answer(false);
    EXPECT_EQ(answer.ReturnXml(1), "");
    EXPECT_EQ(answer.GetObject(), nullptr);
    EXPECT_FALSE(answer.AddObject(nullptr, true));

    sample::Disk* first = NewDisk(1, "a");
    EXPECT_TRUE(answer.AddObject(first, false));
    sample::Disk second;
    EXPECT_FALSE(answer.AddObject(&second, false));
    EXPECT_EQ(answer.GetObject(), first);
    EXPECT_TRUE(answer.AddObject(NewDisk(2, "b"), true));
    EXPECT_EQ(sample::Disk::alive, 2);
    EXPECT_TRUE(answer.AddObject(answer.GetObject(), true));  // must not be deleted
    EXPECT_EQ(answer.ReturnXml(1), "<ReturnObject>" + XmlOfDisk("2", "b") + "</ReturnObject>");
    EXPECT_EQ(answer.ReturnXml(2),
              "<ReturnObject><Header>ChildStatus,Index,Name,ObjectType,Status</Header>"
              "<Data>Up,2,b,TsDisk,Up</Data></ReturnObject>");
}

TEST(Return, ListOfObjects) {
    {
        COMPObjectMethodReturn answer(true);
        EXPECT_EQ(answer.ReturnXml(1), "<ReturnObjectArray />");
        EXPECT_EQ(answer.ReturnXml(2), "<ReturnObjectArray />");
        sample::Disk* kept = NewDisk(1, "a");
        answer.AssignObjects({NewDisk(9, "gone"), kept});
        sample::Disk* other = NewDisk(2, "b,");
        other->SetStatusMessage("x");
        answer.AssignObjects({kept, nullptr, other});
        EXPECT_EQ(sample::Disk::alive, 2);
        EXPECT_EQ(answer.GetObject(), nullptr);
        EXPECT_EQ(
            answer.ReturnXml(2),
            "<ReturnObjectArray><Header>ChildStatus,Index,Name,ObjectType,Status,StatusMessage</Header><Data>"
            "Up,1,a,TsDisk,Up,:Up,2,b--cm--,TsDisk,Up,x:</Data></ReturnObjectArray>");
        EXPECT_TRUE(answer.AddObject(NewDisk(3, "c"), false));
        EXPECT_EQ(answer.GetObjects().size(), 3u);
        EXPECT_TRUE(answer.AddObject(NewDisk(4, "d"), true));
        EXPECT_EQ(answer.ReturnXml(1), "<ReturnObjectArray>" + XmlOfDisk("4", "d") + "</ReturnObjectArray>");
    }
    EXPECT_EQ(sample::Disk::alive, 0);

    sample::Disk lent;
    {
        COMPObjectMethodReturn answer(true);
        answer.ownsObjects = false;
        answer.AddObject(&lent, false);
        answer.AssignObjects({&lent});
    }
    EXPECT_EQ(sample::Disk::alive, 1);
}

/** Returns the indexes of those of four disks that match a filter. */
std::string Passing(const std::string& filter) {
    auto* method = new sample::DiskGetList;
    method->SetAttribute("Filter", filter);
    COMPObjectMethodReturn answer(true, method);
    answer.AssignObjects(
        {NewDisk(1, "left"), NewDisk(2, "right"), NewDisk(3, "left-most"), new sample::Disk});
    std::string passing;
    const std::string xml = answer.ReturnXml(1);
    for (const char* index : {"1", "2", "3"}) {
        if (xml.find("<Index>" + std::string(index)) != std::string::npos)
            passing += index;
    }
    if (xml.find("<TsDisk><Status>") != std::string::npos)
        passing += "-";
    // The other encoding contains the same objects.
    const std::string csv = answer.ReturnXml(2);
    EXPECT_EQ(std::count(csv.begin(), csv.end(), ':'), static_cast<std::ptrdiff_t>(passing.size())) << filter;
    return passing;
}

TEST(Return, AListIsWrittenThroughItsFilter) {
    const std::pair<const char*, const char*> filters[] = {
        {"", "123-"},                                      // none
        {"and Index > 1-", "23"},                          // a disk without an index fails
        {"and Index > 1-Name iqs left-", "3"},             //
        {"or Index = 1-Name = RIGHT-", "12"},              //
        {"and Unknown = 1-Index < 3-", "12"},              //
        {"or Name like x-", "123-"},                       // a list without items
        {"and Status = up-ObjectType = TSDISK-", "123-"},  // descriptors of the bases
        {"and Name iqin left or right-", "12"}};
    for (const auto& [filter, passing] : filters)
        EXPECT_EQ(Passing(filter), passing) << filter;

    // Excluding all objects differs from an empty list.
    auto* method = new sample::DiskGetList;
    method->SetAttribute("Filter", "and Index = 7-");
    COMPObjectMethodReturn answer(true, method);
    answer.AddObject(NewDisk(1, "a"), false);
    EXPECT_EQ(answer.ReturnXml(1), "<ReturnObjectArray></ReturnObjectArray>");
    EXPECT_EQ(answer.ReturnXml(2), "<ReturnObjectArray><Header></Header><Data></Data></ReturnObjectArray>");

    // Other calls have no filter, whatever their attributes are.
    auto* modify = new sample::DiskModify;
    modify->SetAttribute("Filter", "and Index = 7-");
    COMPObjectMethodReturn unfiltered(true, modify);
    unfiltered.AddObject(NewDisk(1, "a"), false);
    EXPECT_THAT(unfiltered.ReturnXml(1), HasSubstr("<Index>1</Index>"));
}

TEST(Return, MethodObjects) {
    METHODObjectMethodReturn list(true);
    EXPECT_EQ(list.ReturnXml(1), "<ReturnMethodObjectArray />");
    METHODObjectMethodReturn one(false);
    EXPECT_EQ(one.ReturnXml(1), "");
    const std::string element = "<HistoricalFilter><FilterTime>a&lt;b</FilterTime></HistoricalFilter>";
    for (METHODObjectMethodReturn* answer : {&list, &one}) {
        for (int i = 0; i < 2; ++i) {
            answer->objects.push_back(std::make_unique<sample::HistoricalFilter>());
            answer->objects.back()->SetAttribute("FilterTime", "a<b");
        }
    }
    EXPECT_EQ(list.ReturnXml(2),
              "<ReturnMethodObjectArray>" + element + element + "</ReturnMethodObjectArray>");
    EXPECT_EQ(one.ReturnXml(1), "<ReturnMethodObject>" + element + "</ReturnMethodObject>");
}

}  // namespace
