#include <gtest/gtest.h>

#include <memory>

#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTsDisk.h"
#include "apiMgmt/apiStub/apiSdk/objects/tessera/src/apiTsServer.h"
#include "apiMgmt/apiStub/base/apiObjects/base/methodReturns.h"
#include "arraySim/control/simulator.h"
#include "arraySim/model/modelFile.h"
#include "tests/unit/arraySim/libraryChannel.h"
#include "tests/unit/arraySim/requests.h"

using namespace arraysim;

namespace {

// Every value is written by hand, and so are the documents below.
constexpr const char* kTinyArray = R"({"serial": 64702, "objects": {
  "TsDisk": [
    {"Index": "5", "Status": "Up", "Name": "01-01", "EnclosureIndex": "3", "Locked": "False", "StatusMessage": ""},
    {"Index": "9", "Status": "Down", "Name": "a<b>&'\"\tö", "Healthy": "False"}],
  "TsServer": [
    {"kind": "TsVirtualServer", "Index": "4", "Name": "web"},
    {"kind": "TsRemoteTessera", "Index": "2", "Name": "far", "TsCreated": "True"},
    {"kind": "TsPhysicalServer", "Index": "7", "Name": "db"}],
  "TsDiskFolderStorageUsage": [{"Index": "6", "TotalSpace": "1953125", "UsedSpace": "0"}],
  "Tessera": [{"Name": "lab", "Location": "rack 4", "Contact": "desk", "InstanceName": "lab"}]}})";

constexpr const char* kGood =
    "<?xml version=\"1.0\" "
    "encoding=\"UTF-8\"?>\n<lumapi><ApiMethodReturn><Error></Error><ErrorCode>None</ErrorCode>"
    "<ErrorDetail></ErrorDetail><LocalizedError></LocalizedError><ReturnObjectEncode>Xml</ReturnObjectEncode>"
    "<Successful>True</Successful><ObjectType>ApiMethodReturn</ObjectType></ApiMethodReturn>";

std::string Failure(const std::string& code, const std::string& text, const std::string& detail = "") {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<lumapi><ApiMethodReturn><Error>" + text +
           "</Error><ErrorCode>" + code + "</ErrorCode><ErrorDetail>" + detail +
           "</ErrorDetail><LocalizedError>" + text +
           "</LocalizedError><ReturnObjectEncode>Xml</ReturnObjectEncode><Successful>False</Successful>"
           "<ObjectType>ApiMethodReturn</ObjectType></ApiMethodReturn></lumapi>";
}

class Documents : public testing::Test {
  protected:
    std::string Answer(const std::string& document) {
        const Exchange exchange = simulator_.Handle(CommandMessage(document, 41));
        EXPECT_EQ(exchange.response.msgtype(), protoIPCMsg::APIResp);
        EXPECT_EQ(exchange.response.sequencenum(), 41u);
        EXPECT_EQ(exchange.response.apirespmsg().cmdtype(), protoIPCMsg::Command);
        return exchange.response.apirespmsg().cmd().respdata();
    }

    std::string Answer(const std::string& object, const std::string& command,
                       const RequestAttributes& attributes = {}) {
        return Answer(RequestDocument(object, command, attributes));
    }

    Simulator simulator_{ReadModel(Catalogue::Builtin(), kTinyArray), {kTestKey}, Spelling::kApi};
};

TEST_F(Documents, ListsHoldWholeObjectsEscaped) {
    EXPECT_EQ(
        Answer("TsDisk", "GetList"),
        std::string(kGood) +
            "<ReturnObjectArray><tsDisk><EnclosureIndex>3</EnclosureIndex><Index>5</Index><Locked>False</"
            "Locked>"
            "<Name>01-01</Name><Status>Up</Status><StatusMessage></StatusMessage></tsDisk>"
            "<tsDisk><Healthy>False</Healthy><Index>9</Index><Name>a&lt;b&gt;&amp;&apos;&quot;&#x0a;ö</Name>"
            "<Status>Down</Status></tsDisk></ReturnObjectArray></lumapi>");
}

TEST_F(Documents, ReducedObjectsHoldWhatTheDaemonReads) {
    EXPECT_EQ(Answer("TsDisk", "Get", {{"InstanceId", "64702.5"}, {"LiteObj", "1"}}),
              std::string(kGood) +
                  "<ReturnObject><tsDisk><EnclosureIndex>3</EnclosureIndex><Index>5</Index><Name>01-01</Name>"
                  "<Status>Up</Status><StatusMessage></StatusMessage></tsDisk></ReturnObject></lumapi>");
}

TEST_F(Documents, ServersStandMixedInTheOrderOfTheModel) {
    EXPECT_EQ(Answer("TsServer", "GetList", {{"LiteObj", "1"}}),
              std::string(kGood) +
                  "<ReturnObjectArray><tsVirtualServer><Index>4</Index><Name>web</Name></tsVirtualServer>"
                  "<tsRemoteTessera><Index>2</Index><Name>far</Name></tsRemoteTessera>"
                  "<tsPhysicalServer><Index>7</Index><Name>db</Name></tsPhysicalServer></ReturnObjectArray></"
                  "lumapi>");
    EXPECT_EQ(Answer("TsRemoteTessera", "GetList"),
              std::string(kGood) +
                  "<ReturnObjectArray><tsRemoteTessera><TsCreated>True</TsCreated><Index>2</Index>"
                  "<Name>far</Name></tsRemoteTessera></ReturnObjectArray></lumapi>");
    EXPECT_EQ(Answer("TsServer", "Get", {{"InstanceId", "64702.7"}}),
              std::string(kGood) +
                  "<ReturnObject><tsPhysicalServer><Index>7</Index><Name>db</Name></tsPhysicalServer>"
                  "</ReturnObject></lumapi>");
}

TEST_F(Documents, ListsGiveWhatTheFilterLetsPass) {
    EXPECT_EQ(Answer("TsDisk", "GetList", {{"Filter", "and Status = down-Index &gt; 5-"}, {"LiteObj", "1"}}),
              std::string(kGood) +
                  "<ReturnObjectArray><tsDisk><Healthy>False</Healthy><Index>9</Index>"
                  "<Name>a&lt;b&gt;&amp;&apos;&quot;&#x0a;ö</Name><Status>Down</Status></tsDisk>"
                  "</ReturnObjectArray></lumapi>");
    EXPECT_EQ(Answer("TsServer", "GetList", {{"Filter", "or Name iqs ar-Index = 7-"}}),
              std::string(kGood) +
                  "<ReturnObjectArray><tsRemoteTessera><TsCreated>True</TsCreated><Index>2</Index>"
                  "<Name>far</Name></tsRemoteTessera><tsPhysicalServer><Index>7</Index><Name>db</Name>"
                  "</tsPhysicalServer></ReturnObjectArray></lumapi>");
}

TEST_F(Documents, ObjectsAreWrittenAsCsvWhenThatIsAskedFor) {
    std::string document = RequestDocument("TsDisk", "GetList", {{"LiteObj", "1"}});
    document.replace(document.find(">xml<"), 5, ">csv<");
    std::string good = kGood;
    good.replace(good.find(">Xml<"), 5, ">Csv<");
    EXPECT_EQ(Answer(document),
              good +
                  "<ReturnObjectArray><Header>EnclosureIndex,Healthy,Index,Name,Status,StatusMessage</Header>"
                  "<Data>3,,5,01-01,Up,:,False,9,a&lt;b&gt;&amp;&apos;&quot;&#x0a;ö,Down,:</Data>"
                  "</ReturnObjectArray></lumapi>");
}

TEST_F(Documents, StorageUsageIsFoundByTheFoldersIndex) {
    EXPECT_EQ(Answer("TsDiskFolderStorageUsage", "Get", {{"InstanceId", "64702.6"}}),
              std::string(kGood) +
                  "<ReturnObject><tsDiskFolderStorageUsage><Index>6</Index>"
                  "<TotalSpace>1953125</TotalSpace><UsedSpace>0</UsedSpace>"
                  "</tsDiskFolderStorageUsage></ReturnObject></lumapi>");
}

TEST_F(Documents, AnEmptyListIsNoFailureUnlessItIsOfUps) {
    EXPECT_EQ(Answer("TsVolume", "GetList"), std::string(kGood) + "<ReturnObjectArray /></lumapi>");
    EXPECT_EQ(Answer("TsUps", "GetList"), Failure("ObjectNotAvailable", "No UPS is monitored"));
}

TEST_F(Documents, LibrarySpellingKeepsTheCapital) {
    Simulator simulator =
        Simulator(ReadModel(Catalogue::Builtin(), kTinyArray), {kTestKey}, Spelling::kLibrary);
    const Exchange exchange = simulator.Handle(
        CommandMessage(RequestDocument("TsDiskFolderStorageUsage", "Get", {{"InstanceId", "64702.6"}})));
    EXPECT_EQ(exchange.response.apirespmsg().cmd().respdata(),
              std::string(kGood) +
                  "<ReturnObject><TsDiskFolderStorageUsage><Index>6</Index>"
                  "<TotalSpace>1953125</TotalSpace><UsedSpace>0</UsedSpace>"
                  "</TsDiskFolderStorageUsage></ReturnObject></lumapi>");
}

TEST_F(Documents, ModifyChangesTheArrayObject) {
    EXPECT_EQ(Answer("Tessera", "Modify", {{"InstanceId", "64702"}, {"Location", "Hall &lt;2&gt; &amp; 3"}}),
              std::string(kGood) + "</lumapi>");
    EXPECT_EQ(Answer("Tessera", "Modify", {{"InstanceId", "64702"}, {"Name", "north"}}),
              std::string(kGood) + "</lumapi>");
    EXPECT_EQ(Answer("Tessera", "Modify", {{"InstanceId", "64702"}, {"Contact", ""}}),
              std::string(kGood) + "</lumapi>");
    EXPECT_EQ(Answer("Tessera", "GetList"),
              std::string(kGood) +
                  "<ReturnObjectArray><Tessera><Contact></Contact><Location>Hall &lt;2&gt; &amp; 3</Location>"
                  "<Name>north</Name><TsName>north</TsName><InstanceName>north</InstanceName></Tessera>"
                  "</ReturnObjectArray></lumapi>");
}

TEST_F(Documents, RequestsThatCannotBeCarriedOutFailAndChangeNothing) {
    struct Case {
        std::string object, command;
        RequestAttributes attributes;
        std::string code, text, detail = {};
    };
    const Case cases[] = {
        {"TsMoon", "GetList", {}, "ObjectNotAvailable", "Object &apos;TsMoon&apos; is not known"},
        {"tsDisk", "GetList", {}, "ObjectNotAvailable", "Object &apos;tsDisk&apos; is not known"},
        {"TsPhysicalServer",
         "GetList",
         {},
         "ObjectNotAvailable",
         "Object &apos;TsPhysicalServer&apos; is not known"},
        {"TsDisk", "Explode", {}, "MethodNotAvailable", "TsDisk has no command &apos;Explode&apos;"},
        {"TsDisk",
         "Modify",
         {{"InstanceId", "64702.5"}},
         "MethodNotAvailable",
         "TsDisk has no command &apos;Modify&apos;"},
        {"TsDiskFolderStorageUsage",
         "GetList",
         {},
         "MethodNotAvailable",
         "TsDiskFolderStorageUsage has no command &apos;GetList&apos;"},
        {"TsDisk", "Get", {}, "InvalidValue", "Required attribute InstanceId not set", "Code 10009"},
        {"TsController",
         "CacheCardGet",
         {{"InstanceId", "64702.1"}},
         "MethodNotAvailable",
         "TsController has no command &apos;CacheCardGet&apos;"},
        {"TsDisk", "Get", {{"InstanceId", "64702.6"}}, "ObjectNotAvailable", "TsDisk 64702.6 does not exist"},
        {"TsDisk", "Get", {{"InstanceId", "64703.5"}}, "InvalidTessera", "Array 64703 is not known"},
        {"TsDisk",
         "Get",
         {{"InstanceId", "64702"}},
         "InvalidArguments",
         "&apos;64702&apos; is not an instance ID"},
        {"TsDisk",
         "Get",
         {{"InstanceId", "64702.5x"}},
         "InvalidArguments",
         "&apos;64702.5x&apos; is not an instance ID"},
        {"TsDisk",
         "GetList",
         {{"Filter", "Name = a-"}},
         "InvalidArguments",
         "&apos;Name = a-&apos; is not a valid filter"},
        {"Tessera", "Modify", {{"InstanceId", "1"}, {"Name", "x"}}, "InvalidTessera", "Array 1 is not known"},
        {"Tessera", "Modify", {{"InstanceId", "64702"}}, "InvalidArguments", "Missing attributes to modify"},
        {"Tessera",
         "Modify",
         {{"InstanceId", "64702"}, {"Name", "x"}, {"Status", "Up"}},
         "InvalidArguments",
         "Tessera Modify does not accept the attribute &apos;Status&apos;"},
        {"Tessera",
         "Modify",
         {{"InstanceId", "64702"}, {"Location", "x"}, {"Name", ""}},
         "ParsingError",
         "Attribute &quot;Name&quot; was &quot;&quot; [0 characters long], but must be a string at least 1 "
         "characters",
         "Code 10763: Name, 1"},
        {"Tessera",
         "Modify",
         {{"InstanceId", "64702"}, {"Location", "x"}, {"OperationMode", "Sleepy"}},
         "InvalidValue",
         "Attribute &quot;OperationMode&quot; was &quot;Sleepy&quot;, but must be in its enumeration"},
        {"Tessera",
         "Modify",
         {{"InstanceId", "64702"}, {"Location", "x"}, {"ManagementIp", "1.2.3"}},
         "InvalidValue",
         "Attribute &quot;ManagementIp&quot; was &quot;1.2.3&quot;, but must be an address"},
        {"TsVolume",
         "MapToServer",
         {{"InstanceId", "64702.1"}, {"Server", "64702.4"}},
         "InvalidValue",
         "Attribute &quot;Server&quot; was &quot;64702.4&quot;, but must be a reference: ID, type and name "
         "of an "
         "object"},
        {"TsDiskFolder",
         "Create",
         {{"DiskList", "64702.5 TsDisk 01-01:64702.6 TsDisk 01-02"}, {"Tessera", "64702 Tessera lab"}},
         "ObjectNotAvailable",
         "TsDisk 64702.6 does not exist"},
        {"TsDiskFolder",
         "RaidRebalance",
         {{"Tessera", "64703 Tessera far"}},
         "InvalidTessera",
         "Array 64703 is not known"},
    };
    const std::string before = simulator_.Execute("dump").text;
    for (const Case& each : cases) {
        EXPECT_EQ(Answer(each.object, each.command, each.attributes),
                  Failure(each.code, each.text, each.detail))
            << each.object << " " << each.command;
    }
    EXPECT_EQ(simulator_.Execute("dump").text, before);
}

TEST_F(Documents, TheKeyIsCheckedBeforeAnythingElse) {
    for (const char* key : {"", "test", "test+key ", "TEST+KEY"}) {
        EXPECT_EQ(Answer(RequestDocument("TsMoon", "GetList", {}, key)),
                  Failure("IllegalSessionKey", "The session key is not known"))
            << key;
    }
}

TEST_F(Documents, TheKeyOfTheLibrarysOwnDocumentsIsCheckedAsWell) {
    ChannelToSimulator channel(simulator_);
    APITsDisk::APITsDiskGetListMethod method;
    method.SetChannel(&channel);

    const std::unique_ptr<BASEApiMethodReturn> good(method.ExecuteWithSession(kTestKey, nullptr, "en_US"));
    const auto* list = dynamic_cast<const COMPObjectMethodReturn*>(good.get());
    ASSERT_NE(list, nullptr);
    ASSERT_EQ(list->GetObjects().size(), 2u);
    EXPECT_EQ(list->GetObjects()[1]->GetAttribute("Name"), "a<b>&'\"\nö");

    // Every server is of a class that the library has.
    APITsServer::APITsServerGetListMethod servers;
    servers.SetChannel(&channel);
    const std::unique_ptr<BASEApiMethodReturn> mixed(servers.ExecuteWithSession(kTestKey, nullptr, ""));
    const auto* all = dynamic_cast<const COMPObjectMethodReturn*>(mixed.get());
    ASSERT_NE(all, nullptr);
    ASSERT_EQ(all->GetObjects().size(), 3u);
    EXPECT_EQ(all->GetObjects()[1]->GetObjectName(), "TsRemoteTessera");

    const std::unique_ptr<BASEApiMethodReturn> bad(method.ExecuteWithSession("TEST+KEY", nullptr, ""));
    ASSERT_NE(bad, nullptr);
    EXPECT_FALSE(bad->GetSuccessful());
    EXPECT_EQ(bad->GetErrorCode(), "IllegalSessionKey");
}

TEST_F(Documents, WhatIsNoRequestDocumentIsAParsingError) {
    const std::string good = RequestDocument("TsDisk", "GetList");
    const std::string method =
        good.substr(good.find("<ApiMethod>"), good.rfind("</lumapi>") - good.find("<ApiMethod>"));
    const std::string documents[] = {
        "",
        "<",
        good.substr(0, good.size() - 1),
        "<lumapy>" + method + "</lumapy>",
        "<lumapi></lumapi>",
        "<lumapi>" + method + method + "</lumapi>",
        "<!DOCTYPE lumapi>" + good,
    };
    for (const std::string& document : documents) {
        EXPECT_NE(Answer(document).find("<ErrorCode>ParsingError</ErrorCode>"), std::string::npos)
            << document;
    }
}

TEST_F(Documents, OtherFormsOfRequestAreRefused) {
    const std::string good = RequestDocument("TsDisk", "GetList");
    struct Case {
        const char *old_text, *new_text, *code;
    };
    const Case cases[] = {{">Method<", ">Association<", "MethodNotAvailable"},
                          {">Method<", ">Rumour<", "MethodNotAvailable"},
                          {"<Async>false<", "<Async>true<", "InvalidArguments"},
                          {">xml<", ">json<", "InvalidArguments"}};
    for (const Case& each : cases) {
        std::string document = good;
        document.replace(document.find(each.old_text), std::string(each.old_text).size(), each.new_text);
        EXPECT_NE(Answer(document).find(std::string("<ErrorCode>") + each.code + "<"), std::string::npos)
            << document;
    }
}

TEST_F(Documents, PingsAndStrangersGetTheirEnvelopes) {
    const Exchange ping = simulator_.Handle(PingMessage(99));
    EXPECT_EQ(ping.response.ShortDebugString(),
              "msgType: APIResp apiRespMsg { cmdtype: Ping ping { pingData: true } } sequenceNum: 99");

    protoIPCMsg::GPBIPCMsg stranger;
    stranger.set_msgtype(protoIPCMsg::MGMT);
    EXPECT_EQ(simulator_.Handle(stranger).response.msgtype(), protoIPCMsg::EMPTY_RESP);

    protoIPCMsg::GPBIPCMsg no_document = CommandMessage("");
    no_document.mutable_apireqmsg()->clear_cmd();
    EXPECT_NE(simulator_.Handle(no_document).response.apirespmsg().cmd().respdata().find("ParsingError"),
              std::string::npos);
}

}  // namespace
