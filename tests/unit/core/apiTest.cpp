#include <stdexcept>

#include "apiMgmt/common/xmlwrap/xmlParser.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/settings/subagentConf.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/apiAccess.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/requestHandler.h"
#include "tests/unit/core/fakes/mibWorld.h"

namespace {

using fake_api_mgr::envelope;
using std::string;

class Api : public MibWorld {
  protected:
    Api() {
        verbose = false;
        conf_controllerIdThis = 64702;
    }
};

string document_of(const string& object, const string& command, const string& attributes) {
    return "<lumapi><ApiConnection><SessionKey>KEY</SessionKey></ApiConnection><ApiMethod><CommandType>Method"
           "</CommandType><Object>" +
           object + "</Object><Command>" + command +
           "</Command><Async>false</Async><ObjectEncodeType>xml</ObjectEncodeType>" +
           (attributes.empty() ? "" : "<Attributes>" + attributes + "</Attributes>") +
           "</ApiMethod></lumapi>";
}

// ---- requests ----

TEST_F(Api, WritesEachKindOfRequest) {
    const std::tuple<const char*, int, const char*, bool, string> rows[] = {
        {"tsEnclosure", kAllObjects, "", true, document_of("TsEnclosure", "GetList", "<LiteObj>1</LiteObj>")},
        {"tsEnclosure", kAllObjects, "", false, document_of("TsEnclosure", "GetList", "")},
        {"tsDisk", 17, "", true,
         document_of("TsDisk", "Get", "<InstanceId>64702.17</InstanceId><LiteObj>1</LiteObj>")},
        {"Tessera", 1, "Location", true,
         document_of("Tessera", "Modify", "<InstanceId>64702</InstanceId><Location>Lab</Location>")},
    };
    for (const auto& [apiName, index, attribute, lite, document] : rows) {
        liteObjEnabled = lite;
        string response;
        EXPECT_EQ(AccessApi(apiName, response, index, attribute, "Lab"), 0);
        EXPECT_EQ(fake_api_mgr::last_document, document);
        const envelope& request = fake_api_mgr::last_request;
        EXPECT_EQ(request.msgtype(), protoIPCMsg::APIRequest);
        EXPECT_EQ(request.apireqmsg().cmdtype(), protoIPCMsg::Command);
        EXPECT_FALSE(request.apireqmsg().has_sourceip() || request.apireqmsg().has_ping());
    }
}

TEST_F(Api, RefusesRequestsThatAnObjectDoesNotHave) {
    string xml;
    EXPECT_EQ(AccessApi("tsNone", xml, kAllObjects, "", ""), 1);
    EXPECT_EQ(AccessApi("tsEnclosure", xml, 3, "", ""), 1);
    EXPECT_EQ(AccessApi("tsDisk", xml, 3, "Name", "x"), 1);
    EXPECT_EQ(transcript::take(),
              "log 4 unrecognized apiName: tsNone$\nlog 4 could not generate GetList request for tsNone$\n"
              "log 4 unrecognized apiName: tsEnclosure$\n"
              "log 4 could not generate Get request for tsEnclosure, iApiIndex: 3$\n"
              "log 4 unrecognized apiName: tsDisk$\nlog 4 could not generate xml request for tsDisk$\n");
}

// ---- checks of responses ----

TEST_F(Api, ChecksAnAnswerStepByStep) {
    const string status = "<Successful>False</Successful>";
    const string code = "<ErrorCode>Bad</ErrorCode>";
    const string none = "<ErrorCode>ObjectNotAvailable</ErrorCode>";
    const auto answer = [](const string& content) {
        return "<lumapi><ApiMethodReturn>" + content + "</ApiMethodReturn></lumapi>";
    };
    const std::tuple<const char*, string, int, const char*> rows[] = {
        {"tsDisk", answer("<Successful>True</Successful>"), 0, ""},
        {"tsDisk", answer("<Successful>True</Successful>" + code), 0, ""},
        {"tsDisk", "", 1, "log 4 xml resp for tsDisk does not parse$\n"},
        {"tsDisk", "<a><b>1</b></a>", 1, "log 4 xml resp for tsDisk does not contain 'lumapi': <b>1</b>$\n"},
        {"tsDisk", "<lumapi><x/></lumapi>", 1,
         "log 4 xml resp for tsDisk does not contain 'ApiMethodReturn': <x></x>$\n"},
        {"tsDisk", answer("<x/>"), 1, "log 4 xml resp for tsDisk does not contain 'Successful': <x></x>$\n"},
        {"tsDisk", answer("<Successful>true</Successful>"), 1,
         "log 4 xml resp for tsDisk does not contain 'ErrorCode': <Successful>true</Successful>$\n"},
        {"tsDisk", answer(status + code), 1,
         "log 4 xml resp for [tsDisk] is Not successful: ErrorCode: [Bad]$\n"
         "log 4 xml resp for tsDisk does not contain 'Error': "
         "<Successful>False</Successful><ErrorCode>Bad</ErrorCode>$\n"},
        {"tsDisk", answer(status + none + "<Error>why</Error>"), 1,
         "log 4 xml resp for [tsDisk] is Not successful: ErrorCode: [ObjectNotAvailable]$\n"
         "log 4 xml resp for tsDisk has Error: why$\n"},
        {"tsUps", answer(status + none + "<Error>why</Error>"), 1, ""},
        {"tsUps", answer(status + code + "<Error>why</Error>"), 1,
         "log 4 xml resp for [tsUps] is Not successful: ErrorCode: [Bad]$\n"},
    };
    for (const auto& [apiName, xml, result, log] : rows) {
        parser::XMLParser document(nullptr);
        document.ParseXMLString(xml);
        EXPECT_EQ(check_xml_resp(apiName, document.GetDocumentElement()), result) << xml;
        EXPECT_EQ(transcript::take(), log) << xml;
    }
}

// ---- one object ----

TEST_F(Api, SingleInstanceIsFetchedOnceForSeveralAttributes) {
    fake_api_mgr::documents["Get TsDisk 64702.5"] = fake_api_mgr::object_answer(
        "<TsDisk><Name>n</Name><Index>5000000000</Index></TsDisk><tsDisk><Name>second</Name></tsDisk>");
    fake_api_mgr::documents["Get TsServer 64702.6"] = fake_api_mgr::object_answer(
        "<tsVirtualServer><Name>virtual</Name></tsVirtualServer><tsRemoteTessera><Name>remote</Name>"
        "</tsRemoteTessera>");
    const int32_t name = var_at(COLID_tsDiskName, 1);
    const int32_t index = var_at(COLID_tsDiskApiIndex, 1);
    vars[index].uint = 77;
    EXPECT_EQ(GetSingleInstance("tsDisk", 5, "Name", name, false), 0);
    EXPECT_EQ(GetSingleInstance("tsDisk", 5, "Index", index, true), 0);
    EXPECT_EQ(transcript::take(), "api Get TsDisk 64702.5\n");
    EXPECT_EQ(vars[name].str, "n");
    EXPECT_EQ(vars[index].uint, 4294967295U);
    EXPECT_FALSE(is_cached(name));
    vars[index].uint = 77;
    EXPECT_EQ(GetSingleInstance("tsDisk", 5, "Index", index, true), 0);
    EXPECT_EQ(vars[index].uint, 77U);  // an unchanged string is not converted again
    EXPECT_EQ(GetSingleInstance("tsServer", 6, "Name", name, false), 0);
    EXPECT_EQ(vars[name].str, "remote");
}

TEST_F(Api, SingleInstanceTellsWhyItFailed) {
    const string kReturn = "<ApiMethodReturn><Successful>True</Successful></ApiMethodReturn>";
    const std::pair<string, const char*> rows[] = {
        {"<lumapi", "log 4 error found while trying to parse XmlString: <lumapi$\n"},
        {"<x/>", "log 4 xml resp for tsDisk does not contain 'lumapi': $\n"},
        {fake_api_mgr::list_answer("<tsDisk><Name>n</Name></tsDisk>"),
         "log 4 response from ApiMgr does not contain 'ReturnObject': "
         "<ApiMethodReturn><Successful>True</Successful>"
         "</ApiMethodReturn><ReturnObjectArray><tsDisk><Name>n</Name></tsDisk></ReturnObjectArray>$\n"},
        {fake_api_mgr::object_answer("<tsVolume/>"),
         "log 4 response from ApiMgr for single instance does not contain tsDisk$\n"},
        {fake_api_mgr::object_answer("<tsDisk><name>n</name></tsDisk>"), ""},
    };
    const int32_t variable = var_at(COLID_tsDiskName, 1);
    vars[variable].str = "old";
    for (const auto& [xml, log] : rows) {
        fake_api_mgr::documents["Get TsDisk 64702.5"] = xml;
        EXPECT_NE(GetSingleInstance("tsDisk", 5, "Name", variable, false), 0);
        EXPECT_EQ(transcript::take(), string("api Get TsDisk 64702.5\n") + log);
    }
    verbose = true;
    EXPECT_NE(GetSingleInstance("tsDisk", 5, "Name", variable, true), 0);
    EXPECT_EQ(transcript::take(), "log 7 specified attr not found: iAttrName: Name$\n");

    // After a failed fetch, no values of the previous object remain.
    fake_api_mgr::documents["Get TsDisk 64702.5"] =
        fake_api_mgr::object_answer("<tsDisk><Name>n</Name></tsDisk>");
    EXPECT_EQ(GetSingleInstance("tsDisk", 5, "Name", variable, false), 0);
    fake_api_mgr::refuse_connections(true);
    vars[variable].str = "old";
    EXPECT_NE(GetSingleInstance("tsDisk", 6, "Name", variable, false), 0);
    EXPECT_NE(transcript::take().find("log 4 failed to get xml response for tsDisk, attrName: Name$\n"),
              string::npos);
    EXPECT_NE(GetSingleInstance("tsDisk", 6, "Name", variable, true), 0);
    EXPECT_EQ(vars[variable].str, "old");
}

// ---- the link ----

TEST_F(Api, JudgesEachEnvelope) {
    const auto number = [](int off) {
        return std::to_string(fake_api_mgr::last_request.sequencenum() + static_cast<unsigned>(off));
    };
    const std::pair<std::function<void(const envelope&, envelope&)>, string> rows[] = {
        {[](const envelope&, envelope& answer) { answer.set_sequencenum(answer.sequencenum() + 1); },
         "log 4 > > seqNum mismatch: req_seqnum=2: resp_seqnum=3$\n"},
        {[](const envelope&, envelope& answer) { answer.clear_sequencenum(); },
         "log 4 > > seqNum mismatch: req_seqnum=3: resp_seqnum=0$\n"},
        {[](const envelope&, envelope& answer) { answer.set_msgtype(protoIPCMsg::APIRequest); },
         "log 4 msgResponse.msgtype != protoIPCMsg::APIResp: msgtype: 2, req_seqnum=4: resp_seqnum=4$\n"},
        {[](const envelope&, envelope& answer) { answer.clear_apirespmsg(); },
         "log 4 msgResponse did Not have apirespmsg$\n"},
        {[](const envelope&, envelope&) { throw std::runtime_error("torn"); },
         "log 4 Caught std::exception processing request: torn$\n"},
        {[](const envelope&, envelope&) { throw 5; }, "log 4 Caught unknown exception processing request$\n"},
    };
    envelope request;
    request.set_msgtype(protoIPCMsg::APIRequest);
    request.mutable_apireqmsg()->set_cmdtype(protoIPCMsg::Ping);
    envelope response;
    EXPECT_EQ(snmpSubagentComm->SendRequestToAPIManager(request, response), 0);
    EXPECT_EQ(request.sequencenum(), 1U);
    EXPECT_TRUE(snmpSubagentComm->apimgr_ok());
    transcript::take();
    for (const auto& [meddler, log] : rows) {
        fake_api_mgr::meddle(meddler);
        envelope answer;
        EXPECT_EQ(snmpSubagentComm->SendRequestToAPIManager(request, answer), 1);
        EXPECT_EQ(transcript::take(), "api ping\n" + log);
        EXPECT_FALSE(snmpSubagentComm->apimgr_ok());
        snmpSubagentComm->set_apimgr_state(true);
    }
    fake_api_mgr::meddle(nullptr);
    fake_api_mgr::refuse_connections(true);
    snmpSubagentComm->SendRequestToAPIManager(request, response);
    fake_api_mgr::refuse_connections(false);
    snmpSubagentComm->SendRequestToAPIManager(request, response);
    EXPECT_EQ(number(0), "9");  // numbers of requests that were not sent are not reused
}

TEST_F(Api, TestsTheLinkInOrderAndKeepsTheTimeOfTheLastGoodExchange) {
    const auto answer_with = [](const char* document) {
        return [document](const envelope& request, envelope& answer) {
            if (request.apireqmsg().has_cmd())
                answer.mutable_apirespmsg()->mutable_cmd()->set_respdata(document);
        };
    };
    const std::tuple<bool, std::function<void(const envelope&, envelope&)>, const char*, bool, int> rows[] = {
        {false, nullptr, "0\napi ping\napi GetList TsController\n", true, 0},
        {false,
         answer_with("<lumapi><ApiMethodReturn><Successful>False</Successful></ApiMethodReturn></lumapi>"),
         "0\napi ping\napi GetList TsController\n", true, 0},
        {true, nullptr,
         "1\napi refused\nlog 4 Exception: /tmp/apimgr.sock: nobody listens$\n"
         "log 4  ---- Can't connect to ApiMgr's socket ----$\nlog 4 Could not open socket to ApiMgr.$\n",
         true, 5},  // the socket alone does not affect the state of the link
        {false,
         [](const envelope&, envelope& answer) {
             if (answer.apirespmsg().has_ping())
                 answer.mutable_apirespmsg()->mutable_ping()->set_pingdata(false);
         },
         "1\napi ping\nlog 4 Failed 1st try to SendPingToApiMgr()$\n", false, 0},
        {false, [](const envelope&, envelope& answer) { answer.mutable_apirespmsg()->clear_cmd(); },
         "1\napi ping\napi GetList TsController\nlog 4 msgResponse did Not have cmd$\n"
         "log 4 Failed TestAccessToApiMgr()$\n",
         false, 0},
        {false, answer_with(""),
         "1\napi ping\napi GetList TsController\nlog 4 response from ApiMgr does not parse: $\n"
         "log 4 Failed TestAccessToApiMgr()$\n",
         false, 0},
    };
    for (const auto& [refused, meddler, course, ok, silence_s] : rows) {
        snmpSubagentComm->set_apimgr_state(true);
        fake_clock::advance(5'000'000);
        fake_api_mgr::refuse_connections(refused);
        fake_api_mgr::meddle(meddler);
        const int result = test_apimgr();
        EXPECT_EQ(std::to_string(result) + "\n" + transcript::take(), course);
        EXPECT_EQ(snmpSubagentComm->apimgr_ok(), ok) << course;
        timeval elapsed{};
        snmpSubagentComm->time_since_apimgr_ok(&elapsed);
        EXPECT_EQ(elapsed.tv_sec, silence_s) << course;
    }
    fake_api_mgr::meddle(nullptr);
    EXPECT_EQ(snmpSubagentComm->TestAccessToApiMgr(), 0);
    EXPECT_EQ(fake_api_mgr::last_document, document_of("TsController", "GetList", ""));
    EXPECT_EQ(snmpSubagentComm->SendPingToApiMgr(), 0);
    EXPECT_EQ(fake_api_mgr::last_request.apireqmsg().ping().pingdata(), "ping from snmpSubagent to ApiMgr");
    EXPECT_FALSE(fake_api_mgr::last_request.apireqmsg().has_cmd());
}

}  // namespace
