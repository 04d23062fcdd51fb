#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <atomic>
#include <fstream>
#include <mutex>
#include <set>
#include <thread>

#include "apiMgmt/common/wirelink/wireLink.h"
#include "arraySim/control/controlSocket.h"
#include "arraySim/control/service.h"
#include "arraySim/control/trace.h"
#include "arraySim/model/presets.h"
#include "arraySim/scenario/scenario.h"
#include "tests/unit/arraySim/requests.h"

using namespace arraysim;
using testing::HasSubstr;

namespace {

class Services : public testing::Test {
  protected:
    void SetUp() override {
        simulator_.SetHooks({.listen = [this] { service_.FollowListening(); }, .say = {}, .quit = {}});
        service_.Start();
    }

    std::string GetList(WireLinkClient& client, const std::string& object, unsigned sequence) {
        protoIPCMsg::GPBIPCMsg response;
        client.SendReceiveMessage(CommandMessage(RequestDocument(object, "GetList"), sequence), response);
        EXPECT_EQ(response.sequencenum(), sequence);
        return response.apirespmsg().cmd().respdata();
    }

    std::string GetList(const std::string& object, unsigned sequence = 1) {
        WireLinkClient client(endpoint_);
        return GetList(client, object, sequence);
    }

    void Observe(const ServedExchange& exchange) {
        const std::lock_guard<std::mutex> guard(mutex_);
        served_.push_back(exchange);
    }

    std::mutex mutex_;
    std::vector<ServedExchange> served_;
    TestFolder folder_;
    Simulator simulator_{
        BuildPreset(Catalogue::Builtin(), *FindPreset("small"), 1, 64702), {kTestKey}, Spelling::kApi};
    WireLinkEndpoint endpoint_ = WireLinkEndpoint::CreateLocalEndpoint(folder_ / "api", 900, 5242880);
    Service service_{simulator_, folder_ / "api",
                     [this](const ServedExchange& exchange) { Observe(exchange); }};
};

TEST_F(Services, AConnectionCarriesAnyNumberOfExchanges) {
    WireLinkClient client(endpoint_);
    for (unsigned i = 1; i <= 20; ++i) {
        EXPECT_THAT(GetList(client, i % 2 == 0 ? "TsDisk" : "TsVolume", i), HasSubstr("<Successful>True<"));
    }
}

TEST_F(Services, RequestsAndCommandsMixFreely) {
    constexpr unsigned kRounds = 40;
    std::atomic<unsigned> good = 0;
    std::vector<std::thread> threads;
    for (unsigned t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            for (unsigned i = 0; i < kRounds; ++i) {
                const std::string document = GetList(t % 2 == 0 ? "TsDisk" : "TsAlert", t * kRounds + i + 1);
                good += document.find("<Successful>True<") != std::string::npos ? 1 : 0;
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

TEST_F(Services, AnAnswerThatHangsOrIsLateHoldsUpNobody) {
    simulator_.Execute("fault hang on TsDisk for 1");
    simulator_.Execute("fault delay 3600000 on TsVolume for 1");
    WireLinkClient hanging(endpoint_);
    hanging.SendGPBMsg(CommandMessage(RequestDocument("TsDisk", "GetList")));
    WireLinkClient late(endpoint_);
    late.SendGPBMsg(CommandMessage(RequestDocument("TsVolume", "GetList")));
    ASSERT_TRUE(simulator_.WaitForExchange("GetList", "TsDisk", 0));
    ASSERT_TRUE(simulator_.WaitForExchange("GetList", "TsVolume", 0));
    EXPECT_THAT(GetList("TsDisk"), HasSubstr("<Successful>True<"));
    EXPECT_THAT(GetList("TsVolume"), HasSubstr("<Successful>True<"));
    service_.Stop();  // ends both of them: the peers see a close
    protoIPCMsg::GPBIPCMsg nothing;
    EXPECT_EQ(hanging.RecvGPBMsg(nothing), 0u);
    EXPECT_EQ(late.RecvGPBMsg(nothing), 0u);
    EXPECT_NE(access((folder_ / "api").c_str(), F_OK), 0);
}

TEST_F(Services, APeerThatBreaksOffOrTalksNonsenseHarmsNobody) {
    for (const std::string& bytes : {std::string("\0\0\0\x09half", 8), std::string("\0\0", 2),
                                     std::string("\xff\xff\xff\xff", 4), std::string("\0\0\0\x02zz", 6)}) {
        WireLinkClient client(endpoint_);
        ASSERT_EQ(send(client.descriptor(), bytes.data(), bytes.size(), MSG_NOSIGNAL),
                  static_cast<ssize_t>(bytes.size()));
    }
    EXPECT_THAT(GetList("TsDisk"), HasSubstr("<Successful>True<"));
}

TEST_F(Services, TheTraceTellsWhatWasServed) {
    simulator_.Execute("fault tear 10 on TsVolume for 1");
    GetList("TsDisk", 5);
    EXPECT_THROW(GetList("TsVolume", 6), WireLinkError);
    EXPECT_THAT(GetList("TsMoon", 7), HasSubstr("ObjectNotAvailable"));
    service_.Stop();
    std::set<std::string> lines;
    for (ServedExchange exchange : served_) {
        exchange.elapsed_ms = 1.5;
        exchange.bytes = exchange.record.object == "TsVolume" ? exchange.bytes : 0;
        lines.insert(Trace::Columns(exchange));
    }
    EXPECT_THAT(
        lines,
        testing::ElementsAre(
            "     1        5  GetList  TsDisk                           0      12         0     1.50  ok",
            "     2        6  GetList  TsVolume                         0       6        10     1.50  ok "
            "fault:tear",
            "     3        7  GetList  ?                                0       0         0     1.50  "
            "ObjectNotAvailable"));
}

TEST(FullArray, TheAlertListFitsAndIsWhole) {
    TestFolder folder;
    Simulator simulator(BuildPreset(Catalogue::Builtin(), *FindPreset("full"), 1, 64702), {kTestKey},
                        Spelling::kApi);
    Service service(simulator, folder / "api", [](const ServedExchange&) {});
    service.Start();
    WireLinkClient client(WireLinkEndpoint::CreateLocalEndpoint(folder / "api", 900, 5242880));
    protoIPCMsg::GPBIPCMsg response;
    client.SendReceiveMessage(CommandMessage(RequestDocument("TsAlert", "GetList")), response);
    const std::string& document = response.apirespmsg().cmd().respdata();
    EXPECT_GT(document.size(), 10000000u);
    EXPECT_TRUE(document.ends_with("</tsAlert></ReturnObjectArray></lumapi>"));
}

class Controls : public testing::Test {
  protected:
    TestFolder folder_;
    Simulator simulator_{
        BuildPreset(Catalogue::Builtin(), *FindPreset("small"), 1, 64702), {kTestKey}, Spelling::kApi};
    ControlServer control_{simulator_, folder_ / "ctl"};
};

TEST_F(Controls, CommandsGoThroughTheSocket) {
    control_.Start();
    struct stat status;
    ASSERT_EQ(stat((folder_ / "ctl").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600u);
    Reply reply = Tell(folder_ / "ctl", "get TsDisk 5 Name");
    EXPECT_TRUE(reply.good);
    EXPECT_EQ(reply.text, "02-04\n");
    reply = Tell(folder_ / "ctl", "get TsDisk 8 Name");
    EXPECT_FALSE(reply.good);
    EXPECT_EQ(reply.text, "TsDisk 8 does not exist");
    EXPECT_EQ(Tell(folder_ / "ctl", "dump").text, simulator_.Execute("dump").text);
    EXPECT_FALSE(Tell(folder_ / "ctl", "list\nquit").good);
    control_.Stop();
    EXPECT_NE(access((folder_ / "ctl").c_str(), F_OK), 0);
    EXPECT_THROW(Tell(folder_ / "ctl", "list"), ControlError);
}

TEST_F(Controls, OneSimulatorDoesNotTakeTheSocketOfAnother) {
    control_.Start();
    ControlServer second(simulator_, folder_ / "ctl");
    EXPECT_THROW(second.Start(), ControlError);
    EXPECT_TRUE(Tell(folder_ / "ctl", "list").good);
}

TEST_F(Controls, AFileThatIsNoSocketIsLeftAlone) {
    std::ofstream(folder_ / "ctl") << "precious";
    EXPECT_THROW(control_.Start(), ControlError);
    EXPECT_EQ(access((folder_ / "ctl").c_str(), F_OK), 0);
}

TEST_F(Controls, ALeftOverSocketIsReplaced) {
    const int left_over = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    (folder_ / "ctl").copy(address.sun_path, sizeof address.sun_path - 1);
    ASSERT_EQ(bind(left_over, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    close(left_over);
    control_.Start();
    EXPECT_TRUE(Tell(folder_ / "ctl", "list").good);
}

TEST_F(Controls, AScenarioOnTheClockEndsWhenItIsStopped) {
    ClockPace pace(simulator_);
    std::thread sleeper([&] { EXPECT_FALSE(pace.SleepUntil(3600000)); });
    std::thread waiter([&] { EXPECT_FALSE(pace.WaitForExchange("GetList", "TsDisk", 0)); });
    pace.Stop();
    sleeper.join();
    waiter.join();
}

}  // namespace
