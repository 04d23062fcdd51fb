#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

#include "apiMgmt/common/wirelink/wireLink.h"
#include "apiMgmt/common/xmlwrap/xmlParser.h"
#include "arraySim/control/service.h"
#include "arraySim/model/presets.h"
#include "tests/unit/arraySim/requests.h"

using namespace arraysim;
using testing::HasSubstr;
using testing::Not;

namespace {

/** A real service on a real socket, and what the daemon would get of it. */
class Faults : public testing::Test {
  protected:
    void SetUp() override {
        simulator_.SetHooks({.listen = [this] { service_.FollowListening(); }, .say = {}, .quit = {}});
        service_.Start();
    }

    void Command(const std::string& line) {
        const Reply reply = simulator_.Execute(line);
        ASSERT_TRUE(reply.good) << line << ": " << reply.text;
    }

    /** One exchange on a connection of its own. Throws what the channel throws. */
    protoIPCMsg::GPBIPCMsg Exchange(const protoIPCMsg::GPBIPCMsg& request) {
        WireLinkClient client(endpoint_);
        protoIPCMsg::GPBIPCMsg response;
        client.SendReceiveMessage(request, response);
        return response;
    }

    protoIPCMsg::GPBIPCMsg GetList(const std::string& object) {
        return Exchange(CommandMessage(RequestDocument(object, "GetList", {{"LiteObj", "1"}})));
    }

    std::string Document(const std::string& object) { return GetList(object).apirespmsg().cmd().respdata(); }

    /** What the channel says about an exchange; empty when it went well. */
    std::string ChannelError(const protoIPCMsg::GPBIPCMsg& request) {
        try {
            Exchange(request);
        } catch (const WireLinkError& error) {
            return error.what();
        }
        return {};
    }

    static bool Parses(const std::string& document) {
        parser::XMLParser parser;
        return parser.ParseXMLString(document);
    }

    TestFolder folder_;
    Simulator simulator_{
        BuildPreset(Catalogue::Builtin(), *FindPreset("small"), 1, 64702), {kTestKey}, Spelling::kApi};
    WireLinkEndpoint endpoint_ = WireLinkEndpoint::CreateLocalEndpoint(folder_ / "api", 900, 5242880);
    Service service_{simulator_, folder_ / "api", [](const ServedExchange&) {}};
};

TEST_F(Faults, OfTheFrameAreErrorsOfTheChannelAndTheNextExchangeIsGood) {
    struct Case {
        const char *fault, *error;
    };
    const Case cases[] = {
        {"refuse", ""},  // the channel's words depend on who is first
        {"tear", "the peer closed within a frame"},
        {"tear 2", "the peer closed within the header of a frame"},
        {"tear 100", "the peer closed within a frame"},
        {"long-length", "the peer closed within a frame; 1000 bytes of its body are missing"},
        {"huge-length", "a body of 83886081 bytes is too long"},
        {"zero-length", "the body does not parse"},
        {"garbage", "the body does not parse"},
    };
    const protoIPCMsg::GPBIPCMsg request = CommandMessage(RequestDocument("TsDisk", "GetList"));
    for (const Case& each : cases) {
        Command(std::string("fault ") + each.fault + " for 1");
        const std::string error = ChannelError(request);
        EXPECT_FALSE(error.empty()) << each.fault;
        EXPECT_THAT(error, HasSubstr(each.error)) << each.fault;
        EXPECT_EQ(ChannelError(request), "") << "after " << each.fault;
    }
}

TEST_F(Faults, OfTheEnvelopeArriveWhole) {
    Command("fault wrong-sequence for 1");
    EXPECT_EQ(GetList("TsDisk").sequencenum(), 8u);
    Command("fault wrong-type for 1");
    EXPECT_EQ(GetList("TsDisk").msgtype(), protoIPCMsg::CAResp);
    Command("fault no-response for 1");
    EXPECT_FALSE(GetList("TsDisk").has_apirespmsg());
    Command("fault no-cmd for 1");
    EXPECT_FALSE(GetList("TsDisk").apirespmsg().has_cmd());
    Command("fault ping-false for 1");
    EXPECT_EQ(Exchange(PingMessage()).apirespmsg().ping().pingdata(), false);
    EXPECT_EQ(Exchange(PingMessage()).apirespmsg().ping().pingdata(), true);
    EXPECT_EQ(GetList("TsDisk").sequencenum(), 7u);
}

TEST_F(Faults, OfTheDocumentThatMustNotParse) {
    for (const char* fault : {"truncated", "empty", "unbalanced", "nesting 200", "nesting", "doctype",
                              "entities", "external-entity"}) {
        Command(std::string("fault ") + fault + " for 1");
        EXPECT_FALSE(Parses(Document("TsDisk"))) << fault;
    }
    EXPECT_TRUE(Parses(Document("TsDisk")));
}

TEST_F(Faults, OfTheDocumentThatParses) {
    struct Case {
        const char *fault, *present, *absent;
    };
    const Case cases[] = {
        {"wrong-root", "<lumapy>", "lumapi"},
        {"no-return", "<ReturnObjectArray>", "<ApiMethodReturn>"},
        {"no-successful", "<ApiMethodReturn>", "<Successful>"},
        {"lower-true", "<Successful>true</Successful>", "<Successful>True"},
        {"error SpaceRecoveryError no <space>",
         "<Error>no &lt;space&gt;</Error><ErrorCode>SpaceRecoveryError</ErrorCode>", "<ReturnObjectArray"},
        {"error None still a failure", "<Successful>False</Successful>", "<ReturnObjectArray"},
        {"no-objects", "<ReturnObjectArray />", "<tsDisk>"},
        {"missing Status", "<StatusMessage>", "<Status>"},
        {"unknown-status", "<Status>Sideways</Status>", "<Status>Up"},
        {"unknown-status A & B", "<Status>A &amp; B</Status>", "<Status>Up"},
        {"no-index", "<Name>", "<Index>"},
        {"no-parent", "<Index>", "<EnclosureIndex>"},
    };
    for (const Case& each : cases) {
        Command(std::string("fault ") + each.fault + " for 1");
        const std::string document = Document("TsDisk");
        EXPECT_TRUE(Parses(document)) << each.fault;
        EXPECT_THAT(document, HasSubstr(each.present)) << each.fault;
        EXPECT_THAT(document, Not(HasSubstr(each.absent))) << each.fault;
    }
}

TEST_F(Faults, TooManyObjectsAreSoManyBeyondTheDaemonsTable) {
    struct Case {
        const char* fault;
        const char *object, *element;
        size_t objects;
    };
    const Case cases[] = {{"too-many", "TsDisk", "<tsDisk>", 2001},
                          {"too-many 5", "TsControllerFanSensor", "<tsControllerFanSensor>", 17},
                          {"too-many 1", "TsEnclosureAudibleAlarm", "<tsEnclosureAudibleAlarm>", 101}};
    for (const Case& each : cases) {
        Command(std::string("fault ") + each.fault + " for 1");
        const std::string document = Document(each.object);
        size_t count = 0;
        for (size_t at = 0; (at = document.find(each.element, at)) != std::string::npos; ++at) {
            ++count;
        }
        EXPECT_EQ(count, each.objects) << each.object;
    }
}

TEST_F(Faults, AHugeTextStandsInTheFirstObjectAlone) {
    Command("fault huge-text Name 3000000");
    const std::string document = Document("TsDisk");
    EXPECT_TRUE(Parses(document));
    EXPECT_GT(document.size(), 3000000u);
    EXPECT_LT(document.size(), 3100000u);
}

TEST_F(Faults, AnErrorCarriesNothingOut) {
    Command("fault error AuthorizationError no on Tessera for 1");
    const RequestAttributes attributes = {{"InstanceId", "64702"}, {"Location", "elsewhere"}};
    Exchange(CommandMessage(RequestDocument("Tessera", "Modify", attributes)));
    EXPECT_FALSE(simulator_.Execute("expect Tessera 1 Location elsewhere").good);
    Exchange(CommandMessage(RequestDocument("Tessera", "Modify", attributes)));
    EXPECT_TRUE(simulator_.Execute("expect Tessera 1 Location elsewhere").good);
}

TEST_F(Faults, StrikeOnlyWhatTheyAreLimitedToAndAsOftenAsTold) {
    Command("fault empty on TsVolume for 2");
    EXPECT_NE(Document("TsDisk"), "");
    EXPECT_EQ(Document("TsVolume"), "");
    EXPECT_NE(Document("TsDisk"), "");
    EXPECT_EQ(Document("TsVolume"), "");
    EXPECT_NE(Document("TsVolume"), "");
    Command("fault wrong-sequence on Ping");
    EXPECT_EQ(GetList("TsDisk").sequencenum(), 7u);
    EXPECT_EQ(Exchange(PingMessage()).sequencenum(), 8u);
    Command("clear");
    EXPECT_EQ(Exchange(PingMessage()).sequencenum(), 7u);
}

TEST_F(Faults, CombineInOneExchange) {
    Command("fault delay 1");
    Command("fault missing Name");
    Command("fault lower-true");
    Command("fault wrong-sequence");
    const protoIPCMsg::GPBIPCMsg response = GetList("TsDisk");
    EXPECT_EQ(response.sequencenum(), 8u);
    EXPECT_THAT(response.apirespmsg().cmd().respdata(), HasSubstr("<Successful>true<"));
    EXPECT_THAT(response.apirespmsg().cmd().respdata(), Not(HasSubstr("<Name>")));
}

TEST_F(Faults, StopListeningTakesTheSocketAwayUntilCleared) {
    Command("fault stop-listening");
    EXPECT_NE(access((folder_ / "api").c_str(), F_OK), 0);
    EXPECT_THROW(WireLinkClient client(endpoint_), WireLinkError);
    Command("fault empty");
    EXPECT_THROW(WireLinkClient client(endpoint_), WireLinkError);
    Command("clear empty");
    EXPECT_THROW(WireLinkClient client(endpoint_), WireLinkError);
    Command("clear stop-listening");
    EXPECT_NE(Document("TsDisk"), "");
}

}  // namespace
