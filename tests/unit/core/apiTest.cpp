#include <stdexcept>
#include <thread>

#include "apiMgmt/common/xmlwrap/xmlParser.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/settings/subagentConf.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/refresh/apiAccess.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/request/requestHandler.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"
#include "tests/unit/core/fakes/fakeApiMgr.h"
#include "tests/unit/core/fakes/fakeClock.h"
#include "tests/unit/core/fakes/mibWorld.h"
#include "tests/unit/core/fakes/transcript.h"

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
    struct row {
        const char* apiName;
        int index;
        const char* attribute;
        bool lite;
        string document;
    };
    const row rows[] = {
        {"tsEnclosure", kAllObjects, "", true, document_of("TsEnclosure", "GetList", "<LiteObj>1</LiteObj>")},
        {"tsEnclosure", kAllObjects, "", false, document_of("TsEnclosure", "GetList", "")},
        {"Tessera", kAllObjects, "ignored", true, document_of("Tessera", "GetList", "<LiteObj>1</LiteObj>")},
        {"tsDisk", 17, "", true,
         document_of("TsDisk", "Get", "<InstanceId>64702.17</InstanceId><LiteObj>1</LiteObj>")},
        {"tsAlert", 0, "", false, document_of("TsAlert", "Get", "<InstanceId>64702.0</InstanceId>")},
        {"Tessera", 1, "Location", true,
         document_of("Tessera", "Modify", "<InstanceId>64702</InstanceId><Location>Lab</Location>")},
    };
    for (const row& each : rows) {
        liteObjEnabled = each.lite;
        string response;
        EXPECT_EQ(AccessApi(each.apiName, response, each.index, each.attribute, "Lab"), 0);
        EXPECT_EQ(fake_api_mgr::last_document, each.document);
        const envelope& request = fake_api_mgr::last_request;
        EXPECT_EQ(request.msgtype(), protoIPCMsg::APIRequest);
        EXPECT_EQ(request.apireqmsg().cmdtype(), protoIPCMsg::Command);
        EXPECT_FALSE(request.apireqmsg().has_sourceip() || request.apireqmsg().has_ping());
    }
}

TEST_F(Api, AnAnswerWithoutCommandMakesTheLinkBad) {
    fake_api_mgr::meddle([](const envelope&, envelope& answer) { answer.mutable_apirespmsg()->clear_cmd(); });
    string response = "left";
    EXPECT_EQ(AccessApi("tsDisk", response, kAllObjects, "", ""), 1);
    EXPECT_EQ(transcript::take(), "api GetList TsDisk\nlog 4 msgResponse did Not have cmd$\n");
    EXPECT_EQ(response, "left");
    EXPECT_FALSE(snmpSubagentComm->apimgr_ok());
}

// ---- judging answers ----

TEST_F(Api, ChecksAnAnswerStepByStep) {
    const string status = "<Successful>False</Successful>";
    const string code = "<ErrorCode>Bad</ErrorCode>";
    const string none = "<ErrorCode>ObjectNotAvailable</ErrorCode>";
    const auto answer = [](const string& content) {
        return "<lumapi><ApiMethodReturn>" + content + "</ApiMethodReturn></lumapi>";
    };
    struct row {
        const char* apiName;
        string xml;
        int result;
        const char* log;
    };
    const row rows[] = {
        {"tsDisk", answer("<Successful>True</Successful>"), 0, ""},
        {"tsDisk", answer("<Successful>True</Successful>" + code), 0, ""},
        {"tsDisk", answer("<Successful>True</Successful>" + status), 0, ""},
        {"tsDisk", "", 1, "log 4 xml resp for tsDisk does not parse$\n"},
        {"tsDisk", "<a><b>1</b></a>", 1, "log 4 xml resp for tsDisk does not contain 'lumapi': <b>1</b>$\n"},
        {"tsDisk", "<Lumapi/>", 1, "log 4 xml resp for tsDisk does not contain 'lumapi': $\n"},
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
        {"tsUps", answer(status), 1,
         "log 4 xml resp for tsUps does not contain 'ErrorCode': <Successful>False</Successful>$\n"},
    };
    for (const row& each : rows) {
        parser::XMLParser document(nullptr);
        document.ParseXMLString(each.xml);
        EXPECT_EQ(check_xml_resp(each.apiName, document.GetDocumentElement()), each.result) << each.xml;
        EXPECT_EQ(transcript::take(), each.log) << each.xml;
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
    EXPECT_EQ(vars[index].uint, 77U);  // an unchanged text is not read again
    EXPECT_EQ(GetSingleInstance("tsServer", 6, "Name", name, false), 0);
    EXPECT_EQ(vars[name].str, "remote");
}

TEST_F(Api, SingleInstanceTellsWhyItFailed) {
    struct row {
        string xml;
        const char* log;
    };
    const string kReturn = "<ApiMethodReturn><Successful>True</Successful></ApiMethodReturn>";
    const row rows[] = {
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
    for (const row& each : rows) {
        fake_api_mgr::documents["Get TsDisk 64702.5"] = each.xml;
        EXPECT_NE(GetSingleInstance("tsDisk", 5, "Name", variable, false), 0);
        EXPECT_EQ(transcript::take(), string("api Get TsDisk 64702.5\n") + each.log);
    }
    verbose = true;
    EXPECT_NE(GetSingleInstance("tsDisk", 5, "Name", variable, true), 0);
    EXPECT_EQ(transcript::take(), "log 7 specified attr not found: iAttrName: Name$\n");

    // After a fetch that failed nothing of the object before is left to read.
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
    struct row {
        std::function<void(const envelope&, envelope&)> meddler;
        string log;
    };
    const auto number = [](int off) {
        return std::to_string(fake_api_mgr::last_request.sequencenum() + static_cast<unsigned>(off));
    };
    const row rows[] = {
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
    for (const row& each : rows) {
        fake_api_mgr::meddle(each.meddler);
        envelope answer;
        EXPECT_EQ(snmpSubagentComm->SendRequestToAPIManager(request, answer), 1);
        EXPECT_EQ(transcript::take(), "api ping\n" + each.log);
        EXPECT_FALSE(snmpSubagentComm->apimgr_ok());
        snmpSubagentComm->set_apimgr_state(true);
    }
    fake_api_mgr::meddle(nullptr);
    fake_api_mgr::refuse_connections(true);
    snmpSubagentComm->SendRequestToAPIManager(request, response);
    fake_api_mgr::refuse_connections(false);
    snmpSubagentComm->SendRequestToAPIManager(request, response);
    EXPECT_EQ(number(0), "9");  // numbers of requests that never left are not used again
}

TEST_F(Api, TestsTheLinkInOrderAndKeepsTheTimeOfTheLastGoodExchange) {
    struct row {
        bool refused;
        std::function<void(const envelope&, envelope&)> meddler;
        const char* course;
        bool ok;
        int silence_s;  // since the last exchange that was good as far as the envelope goes
    };
    const auto answer_with = [](const char* document) {
        return [document](const envelope& request, envelope& answer) {
            if (request.apireqmsg().has_cmd())
                answer.mutable_apirespmsg()->mutable_cmd()->set_respdata(document);
        };
    };
    const row rows[] = {
        {false, nullptr, "0\napi ping\napi GetList TsController\n", true, 0},
        {false,
         answer_with("<lumapi><ApiMethodReturn><Successful>False</Successful></ApiMethodReturn></lumapi>"),
         "0\napi ping\napi GetList TsController\n", true, 0},
        {true, nullptr,
         "1\napi refused\nlog 4 Exception: /tmp/apimgr.sock: nobody listens$\n"
         "log 4  ---- Can't connect to ApiMgr's socket ----$\nlog 4 Could not open socket to ApiMgr.$\n",
         true, 5},  // the socket alone says nothing of the link
        {false,
         [](const envelope&, envelope& answer) {
             if (answer.apirespmsg().has_ping())
                 answer.mutable_apirespmsg()->mutable_ping()->set_pingdata(false);
         },
         "1\napi ping\nlog 4 Failed 1st try to SendPingToApiMgr()$\n", false, 0},
        {false, [](const envelope&, envelope& answer) { answer.mutable_apirespmsg()->clear_ping(); },
         "1\napi ping\nlog 4 Failed 1st try to SendPingToApiMgr()$\n", false, 0},
        {false, [](const envelope&, envelope& answer) { answer.mutable_apirespmsg()->clear_cmd(); },
         "1\napi ping\napi GetList TsController\nlog 4 msgResponse did Not have cmd$\n"
         "log 4 Failed TestAccessToApiMgr()$\n",
         false, 0},
        {false, answer_with(""),
         "1\napi ping\napi GetList TsController\nlog 4 response from ApiMgr does not parse: $\n"
         "log 4 Failed TestAccessToApiMgr()$\n",
         false, 0},
        {false, answer_with("<other/>"),
         "1\napi ping\napi GetList TsController\nlog 4 response from ApiMgr does not contain 'lumapi': "
         "<other/>$\n"
         "log 4 Failed TestAccessToApiMgr()$\n",
         false, 0},
        {false, [](const envelope&, envelope&) { throw std::runtime_error("torn"); },
         "1\napi ping\nlog 4 Caught std::exception processing request: torn$\n"
         "log 4 Failed 1st try to SendPingToApiMgr()$\n",
         false, 5},
    };
    for (const row& each : rows) {
        snmpSubagentComm->set_apimgr_state(true);
        fake_clock::advance(5'000'000);
        fake_api_mgr::refuse_connections(each.refused);
        fake_api_mgr::meddle(each.meddler);
        const int result = test_apimgr();
        EXPECT_EQ(std::to_string(result) + "\n" + transcript::take(), each.course);
        EXPECT_EQ(snmpSubagentComm->apimgr_ok(), each.ok) << each.course;
        timeval elapsed{};
        snmpSubagentComm->time_since_apimgr_ok(&elapsed);
        EXPECT_EQ(elapsed.tv_sec, each.silence_s) << each.course;
    }
    fake_api_mgr::meddle(nullptr);
    EXPECT_EQ(snmpSubagentComm->TestAccessToApiMgr(), 0);
    EXPECT_EQ(fake_api_mgr::last_document, document_of("TsController", "GetList", ""));
    EXPECT_EQ(snmpSubagentComm->SendPingToApiMgr(), 0);
    EXPECT_EQ(fake_api_mgr::last_request.apireqmsg().ping().pingdata(), "ping from snmpSubagent to ApiMgr");
    EXPECT_FALSE(fake_api_mgr::last_request.apireqmsg().has_cmd());
}

TEST_F(Api, GivesEachThreadNumbersOfItsOwn) {
    std::vector<uint32_t> numbers[2];
    const auto ask = [](std::vector<uint32_t>* own) {
        string response;
        for (int i = 0; i < 500; ++i) {
            envelope request;
            envelope answer;
            request.set_msgtype(protoIPCMsg::APIRequest);
            request.mutable_apireqmsg()->set_cmdtype(protoIPCMsg::Ping);
            EXPECT_EQ(snmpSubagentComm->SendRequestToAPIManager(request, answer), 0);
            own->push_back(request.sequencenum());
        }
    };
    std::thread other(ask, &numbers[1]);
    ask(&numbers[0]);
    other.join();
    std::vector<uint32_t> all = numbers[0];
    all.insert(all.end(), numbers[1].begin(), numbers[1].end());
    std::sort(all.begin(), all.end());
    EXPECT_EQ(std::unique(all.begin(), all.end()), all.end());
    EXPECT_EQ(all.front(), 1U);
    EXPECT_EQ(all.back(), 1000U);
}

}  // namespace
