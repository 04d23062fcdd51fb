// The simulator's sockets: the API manager's with the injected faults, the control socket, and the sender of
// events.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>

#include <atomic>
#include <condition_variable>
#include <fstream>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <thread>

#include "apiMgmt/common/wirelink/wireLink.h"
#include "apiMgmt/common/xmlwrap/xmlParser.h"
#include "arraySim/control/controlSocket.h"
#include "arraySim/control/eventSender.h"
#include "arraySim/control/service.h"
#include "arraySim/control/trace.h"
#include "arraySim/model/presets.h"
#include "tests/unit/arraySim/requests.h"
#include "tests/unit/errorOf.h"
#include "tests/unit/layers/temporaryFolder.h"

using namespace arraysim;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace {

class Services : public testing::Test {
  protected:
    void SetUp() override {
        simulator_.SetHooks({.listen = [this] { service_.FollowListening(); }});
        service_.Start();
    }

    void Command(const std::string& line) {
        const Reply reply = simulator_.Execute(line);
        ASSERT_TRUE(reply.good) << line << ": " << reply.text;
    }

    /** One exchange on its own connection. Throws what the channel throws. */
    protoIPCMsg::GPBIPCMsg Exchange(const protoIPCMsg::GPBIPCMsg& request) {
        WireLinkClient client(endpoint_);
        protoIPCMsg::GPBIPCMsg response;
        client.SendReceiveMessage(request, response);
        return response;
    }

    protoIPCMsg::GPBIPCMsg GetList(const std::string& object, unsigned sequence = 7) {
        return Exchange(CommandMessage(RequestDocument(object, "GetList", {{"LiteObj", "1"}}), sequence));
    }

    std::string Document(const std::string& object) { return GetList(object).apirespmsg().cmd().respdata(); }

    /** Returns the channel's error, or an empty string if the exchange succeeds. */
    std::string ChannelError() {
        return ErrorOf([this] { GetList("TsDisk"); });
    }

    void Observe(const ServedExchange& exchange) {
        const std::lock_guard<std::mutex> guard(mutex_);
        served_.push_back(exchange);
    }

    std::mutex mutex_;
    std::vector<ServedExchange> served_;
    TemporaryFolder folder_;
    Simulator simulator_{
        BuildPreset(Catalogue::Builtin(), *FindPreset("small"), 1, 64702), {kTestKey}, Spelling::kApi};
    WireLinkEndpoint endpoint_ = WireLinkEndpoint::CreateLocalEndpoint(folder_.Path("api"), 900, 5242880);
    Service service_{simulator_, folder_.Path("api"), [this](const ServedExchange& each) { Observe(each); }};
};

// ---- faults ----

TEST_F(Services, FaultsOfTheFrameCauseChannelErrorsAndTheNextExchangeSucceeds) {
    const std::pair<const char*, const char*> rows[] = {
        {"refuse", ""},  // the channel's error depends on the timing
        {"tear 2", "the peer closed within the header of a frame"},
        {"tear", "the peer closed within a frame"},
        {"long-length", "the peer closed within a frame; 1000 bytes of its body are missing"},
        {"huge-length", "body of 83886081 bytes is too long"},
        {"zero-length", "the body does not parse"},
        {"garbage", "the body does not parse"},
    };
    for (const auto& [fault, expected] : rows) {
        Command(std::string("fault ") + fault + " for 1");
        const std::string error = ChannelError();
        EXPECT_FALSE(error.empty()) << fault;
        EXPECT_THAT(error, HasSubstr(expected)) << fault;
        EXPECT_EQ(ChannelError(), "") << "after " << fault;
    }
}

TEST_F(Services, FaultsOfTheDocument) {
    // Strings that the document must and must not contain; if both are missing, it must not parse.
    const std::tuple<const char*, const char*, const char*> rows[] = {
        {"truncated", "", ""},
        {"unbalanced", "", ""},
        {"nesting", "", ""},
        {"entities", "", ""},
        {"wrong-root", "<lumapy>", "lumapi"},
        {"no-return", "<ReturnObjectArray>", "<ApiMethodReturn>"},
        {"no-successful", "<ApiMethodReturn>", "<Successful>"},
        {"lower-true", "<Successful>true</Successful>", "<Successful>True"},
        {"error SpaceRecoveryError no <space>",
         "<Error>no &lt;space&gt;</Error><ErrorCode>SpaceRecoveryError</ErrorCode>", "<ReturnObjectArray"},
        {"no-objects", "<ReturnObjectArray />", "<tsDisk>"},
        {"missing Status", "<StatusMessage>", "<Status>"},
        {"unknown-status A & B", "<Status>A &amp; B</Status>", "<Status>Up"},
        {"no-index", "<Name>", "<Index>"},
        {"no-parent", "<Index>", "<EnclosureIndex>"},
    };
    for (const auto& [fault, present, absent] : rows) {
        Command(std::string("fault ") + fault + " for 1");
        const std::string document = Document("TsDisk");
        EXPECT_EQ(parser::XMLParser().ParseXMLString(document), *present != '\0') << fault;
        if (*present != '\0') {
            EXPECT_THAT(document, testing::AllOf(HasSubstr(present), Not(HasSubstr(absent)))) << fault;
        }
    }
    Command("fault huge-text Name 3000000 for 1");  // in the first object only
    EXPECT_EQ(Document("TsDisk").size() / 100'000, 30U);
    Command("fault too-many 5 for 1");
    const std::string fans = Document("TsControllerFanSensor");
    size_t count = 0;
    for (size_t at = 0; (at = fans.find("<tsControllerFanSensor>", at)) != std::string::npos; ++at) {
        ++count;
    }
    EXPECT_EQ(count, 17U);
}

TEST_F(Services, FaultsOfTheEnvelopeAffectOnlyWhatTheyAreLimitedTo) {
    Command("fault wrong-type for 1");
    EXPECT_EQ(GetList("TsDisk").msgtype(), protoIPCMsg::CAResp);
    Command("fault no-response for 1");
    EXPECT_FALSE(GetList("TsDisk").has_apirespmsg());
    Command("fault no-cmd for 1");
    EXPECT_FALSE(GetList("TsDisk").apirespmsg().has_cmd());
    Command("fault ping-false for 1");
    EXPECT_EQ(Exchange(PingMessage()).apirespmsg().ping().pingdata(), false);
    EXPECT_EQ(Exchange(PingMessage()).apirespmsg().ping().pingdata(), true);

    Command("fault empty on TsVolume for 2");
    Command("fault wrong-sequence on Ping");
    for (const char* expected : {"", "", "<"}) {
        EXPECT_THAT(Document("TsDisk"), Not(testing::IsEmpty()));
        EXPECT_EQ(Document("TsVolume").substr(0, 1), expected);
        EXPECT_EQ(GetList("TsDisk").sequencenum(), 7u);
        EXPECT_EQ(Exchange(PingMessage()).sequencenum(), 8u);
    }
    Command("clear");
    EXPECT_EQ(Exchange(PingMessage()).sequencenum(), 7u);
}

TEST_F(Services, StopListeningRemovesTheSocketUntilCleared) {
    Command("fault stop-listening");
    EXPECT_NE(access(folder_.Path("api").c_str(), F_OK), 0);
    Command("fault empty");
    Command("clear empty");
    EXPECT_THROW(WireLinkClient client(endpoint_), WireLinkError);
    Command("clear stop-listening");
    EXPECT_NE(Document("TsDisk"), "");
}

// ---- connections ----

TEST_F(Services, HandleRequestsAndCommandsConcurrently) {
    constexpr unsigned kRounds = 40;
    std::atomic<unsigned> good = 0;
    std::vector<std::thread> threads;
    for (unsigned t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            WireLinkClient client(endpoint_);  // one connection carries any number of exchanges
            for (unsigned i = 1; i <= kRounds; ++i) {
                const std::string request = RequestDocument(t % 2 == 0 ? "TsDisk" : "TsAlert", "GetList");
                protoIPCMsg::GPBIPCMsg response;
                client.SendReceiveMessage(CommandMessage(request, i), response);
                good += response.sequencenum() == i &&
                        response.apirespmsg().cmd().respdata().find("<Successful>True<") != std::string::npos;
            }
        });
    }
    threads.emplace_back([&] {
        for (unsigned i = 0; i < kRounds; ++i) {
            simulator_.Execute(i % 2 == 0 ? "fail TsDisk 5" : "recover TsDisk 5");
            simulator_.Execute("fault delay 1 for 1");
            simulator_.Execute("stats");
        }
    });
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(good, 4 * kRounds);
    EXPECT_EQ(simulator_.Exchanges("GetList", "TsDisk"), 2 * kRounds);
    service_.Stop();
    EXPECT_EQ(served_.size(), 4 * kRounds);
}

TEST_F(Services, AResponseThatHangsOrIsLateDelaysNoOther) {
    Command("fault hang on TsDisk for 1");
    Command("fault delay 3600000 on TsVolume for 1");
    WireLinkClient hanging(endpoint_), late(endpoint_);
    hanging.SendGPBMsg(CommandMessage(RequestDocument("TsDisk", "GetList")));
    late.SendGPBMsg(CommandMessage(RequestDocument("TsVolume", "GetList")));
    ASSERT_TRUE(simulator_.WaitForExchange("GetList", "TsDisk", 0));
    ASSERT_TRUE(simulator_.WaitForExchange("GetList", "TsVolume", 0));
    EXPECT_THAT(Document("TsDisk"), HasSubstr("<Successful>True<"));
    EXPECT_THAT(Document("TsVolume"), HasSubstr("<Successful>True<"));
    service_.Stop();  // closes both connections
    protoIPCMsg::GPBIPCMsg nothing;
    EXPECT_EQ(hanging.RecvGPBMsg(nothing), 0u);
    EXPECT_EQ(late.RecvGPBMsg(nothing), 0u);
    EXPECT_NE(access(folder_.Path("api").c_str(), F_OK), 0);
}

TEST_F(Services, TheTraceHasOneLinePerExchange) {
    Command("fault tear 10 on TsVolume for 1");
    GetList("TsDisk", 5);
    EXPECT_THROW(GetList("TsVolume", 6), WireLinkError);
    GetList("TsMoon", 7);
    service_.Stop();
    std::set<std::string> lines;
    for (ServedExchange exchange : served_) {
        exchange.elapsed_ms = 1.5;
        exchange.bytes = exchange.record.object == "TsVolume" ? exchange.bytes : 0;
        lines.insert(Trace::Columns(exchange));
    }
    EXPECT_THAT(
        lines,
        ElementsAre(
            "     1        5  GetList  TsDisk                           1      12         0     1.50  ok",
            "     2        6  GetList  TsVolume                         1       6        10     1.50  ok "
            "fault:tear",
            "     3        7  GetList  ?                                1       0         0     1.50  "
            "ObjectNotAvailable"));
    EXPECT_EQ(Trace::Columns(SentEvent{"4 4 4 0 0 0 0 0 a\nb", "delivered", 1.5}),
              "event  delivered      1.50  4 4 4 0 0 0 0 0 a b");
}

// ---- the control socket ----

class Controls : public testing::Test {
  protected:
    TemporaryFolder folder_;
    Simulator simulator_{
        BuildPreset(Catalogue::Builtin(), *FindPreset("small"), 1, 64702), {kTestKey}, Spelling::kApi};
    ControlServer control_{simulator_, folder_.Path("ctl")};
};

TEST_F(Controls, CommandsGoThroughTheSocketOfOneSimulator) {
    control_.Start();
    struct stat status;
    ASSERT_EQ(stat(folder_.Path("ctl").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600u);
    EXPECT_EQ(Tell(folder_.Path("ctl"), "get TsDisk 5 Name").text, "02-04\n");
    const Reply error = Tell(folder_.Path("ctl"), "get TsDisk 8 Name");
    EXPECT_FALSE(error.good);
    EXPECT_EQ(error.text, "TsDisk 8 does not exist");
    EXPECT_EQ(Tell(folder_.Path("ctl"), "dump").text, simulator_.Execute("dump").text);
    EXPECT_FALSE(Tell(folder_.Path("ctl"), "list\nquit").good);
    ControlServer second(simulator_, folder_.Path("ctl"));
    EXPECT_THROW(second.Start(), ControlError);
    EXPECT_TRUE(Tell(folder_.Path("ctl"), "list").good);
    control_.Stop();
    EXPECT_NE(access(folder_.Path("ctl").c_str(), F_OK), 0);
    EXPECT_THROW(Tell(folder_.Path("ctl"), "list"), ControlError);
}

TEST_F(Controls, AFileThatIsNotASocketIsLeftAlone) {
    std::ofstream(folder_.Path("ctl")) << "precious";
    EXPECT_THROW(control_.Start(), ControlError);
    EXPECT_EQ(access(folder_.Path("ctl").c_str(), F_OK), 0);
}

// ---- events ----

/** A daemon's socket that a test opens and closes, and a sender that retries immediately. */
class Sending : public testing::Test {
  protected:
    void Start(EventSender::Limits limits) {
        limits.retry = std::chrono::milliseconds(1);
        sender_.emplace(
            folder_.Path("daemon"), limits,
            [this](const SentEvent& event) { Record(event.text + " " + event.outcome); },
            [this](const std::string& /*text*/) { Record("complaint"); });
        sender_->Start();
    }

    void Record(const std::string& note) {
        const std::lock_guard<std::mutex> guard(mutex_);
        ++notes_[note];
        recorded_.notify_all();
    }

    void WaitFor(const std::string& note) {
        std::unique_lock<std::mutex> lock(mutex_);
        recorded_.wait(lock, [&] { return notes_.contains(note); });
    }

    /** Returns the events of one connection. */
    std::vector<std::string> Take(WireLinkServer& daemon) {
        WireLinkServerConnection connection(endpoint_, daemon.Accept(nullptr, nullptr, 0));
        std::vector<std::string> texts;
        protoIPCMsg::GPBIPCMsg message;
        while (connection.RecvGPBMsg(message) != 0) {
            texts.push_back(message.mgmtmsg().addlarg());
        }
        return texts;
    }

    TemporaryFolder folder_;
    WireLinkEndpoint endpoint_ = WireLinkEndpoint::CreateLocalEndpoint(folder_.Path("daemon"), 60, 65536);
    std::mutex mutex_;
    std::condition_variable recorded_;
    std::map<std::string, int> notes_;  // how often
    std::optional<EventSender> sender_;
};

TEST_F(Sending, EventsWaitInOrderForAnAbsentDaemon) {
    Start({.waiting = 3, .stop_timeout = std::chrono::hours(1)});
    for (const char* text : {"one", "two", "three", "beyond the limit"}) {
        sender_->Push(text);
    }
    WaitFor("complaint");
    WaitFor("beyond the limit overflow");
    EXPECT_EQ(sender_->Describe(), "events delivered 0, dropped 1, waiting 3\n");
    WireLinkServer daemon(endpoint_);
    EXPECT_THAT(Take(daemon), ElementsAre("one", "two", "three"));
    // The connection is closed when the queue is empty, so that another sender can connect.
    sender_->Push("four");
    EXPECT_THAT(Take(daemon), ElementsAre("four"));
    sender_->Push("five");
    sender_->Stop();  // delivers what is waiting
    EXPECT_EQ(notes_["five delivered"], 1);
    EXPECT_EQ(notes_["complaint"], 1) << "once, although it has retried many times";
}

TEST_F(Sending, UnreadEventsAreDroppedAndDelayNeitherChangesNorShutdown) {
    Start({.timeout = std::chrono::milliseconds(0)});
    sender_->Push("one");
    WaitFor("one dropped");

    WireLinkServer daemon(endpoint_);
    Start({.waiting = 100000, .stop_timeout = std::chrono::milliseconds(1)});
    const std::string text(400, 'x');
    for (int i = 0; i < 5000; ++i) {  // more than fits in the socket
        sender_->Push(text);
    }
    sender_->Stop();
    EXPECT_GT(notes_[text + " delivered"], 0);
    EXPECT_GT(notes_[text + " dropped"], 0);
    EXPECT_EQ(notes_[text + " delivered"] + notes_[text + " dropped"], 5000);
}

}  // namespace
