#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <condition_variable>
#include <mutex>

#include "apiMgmt/common/wirelink/wireLink.h"
#include "arraySim/control/eventSender.h"
#include "arraySim/control/simulator.h"
#include "arraySim/control/trace.h"
#include "arraySim/model/events.h"
#include "arraySim/model/presets.h"
#include "tests/unit/arraySim/requests.h"

using namespace arraysim;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

namespace {

/** A simulator whose events go into a list. */
class Events : public testing::Test {
  protected:
    void SetUp() override {
        SimulatorHooks hooks;
        hooks.send_event = [this](std::string text) { events_.push_back(std::move(text)); };
        hooks.describe_events = [] { return std::string("counts of the sender\n"); };
        simulator_.SetHooks(std::move(hooks));
    }

    /** The events of one command. */
    std::vector<std::string> After(const std::string& command) {
        events_.clear();
        const Reply reply = simulator_.Execute(command);
        EXPECT_TRUE(reply.good) << command << ": " << reply.text;
        return events_;
    }

    /** Their eight numbers. */
    std::vector<std::string> NumbersAfter(const std::string& command) {
        std::vector<std::string> numbers = After(command);
        for (std::string& event : numbers) {
            size_t end = 0;
            for (int field = 0; field < 8; ++field) {
                end = event.find(' ', end + 1);
            }
            event.resize(end);
        }
        return numbers;
    }

    std::vector<std::string> events_;
    Simulator simulator_{
        BuildPreset(Catalogue::Builtin(), *FindPreset("small"), 1, 64702), {kTestKey}, Spelling::kApi};
};

/** The preset's indexes differ from its rows, so one that is taken for the other shows. */
TEST_F(Events, AChangeOfStatusIsReportedAsItsKindIs) {
    struct Case {
        const char* command;
        std::vector<std::string> numbers;
    };
    const Case cases[] = {
        {"fail TsController 3 Degraded", {"37 4 8 203 3 0 0 0"}},
        {"fail TsController 3 Degraded", {}},
        {"fail TsController 3", {"37 4 8 203 3 0 0 0"}},
        {"recover TsController 3", {"37 4 8 203 3 0 0 5"}},
        {"recover TsController 3", {}},
        {"fail TsControllerCacheCard 3", {"29 1 47 210 2 0 0 0"}},
        {"fail TsControllerFanSensor 9", {"29 1 98 204 2 1 8 0"}},
        {"recover TsControllerFanSensor 3", {"29 1 98 204 1 1 2 5"}},
        {"fail TsControllerPowerSupply 8", {"29 1 43 204 2 2 2 0"}},
        {"fail TsEnclosureCoolingFanSensor 3", {"12 5 28 206 2 1 2 0"}},
        {"fail TsDisk 5", {"13 1 37 202 5 0 0 0", "18 24 14 207 1 0 0 0"}},
        {"fail TsDisk 3", {"13 1 37 202 3 0 0 0"}},
        {"recover TsDisk 5", {"13 1 37 202 5 0 0 5"}},
        {"recover TsDisk 3", {"13 1 37 202 3 0 0 5", "18 24 14 207 1 0 0 5"}},
        {"fail TsVolume 3", {"15 1 60 208 3 0 0 0"}},
        {"fail TsServerCluster 6", {"23 1 301 209 6 0 0 0"}},
        {"recover TsServer 8", {"23 1 301 209 8 0 0 5"}},
        {"set Tessera 1 PortsBalanced False", {"7 7 7 211 1 0 0 0"}},
        {"set Tessera 1 PortsBalanced True", {"7 7 7 211 1 0 0 5"}},
        {"set Tessera 1 Status Down", {}},
        {"set TsVolume 3 Status Up", {"15 1 60 208 3 0 0 5"}},
        {"set TsVolume 3 Status Sideways", {"15 1 60 208 3 0 0 0"}},
        {"set TsVolume 3 Name other", {}},
        {"unset TsVolume 3 Status", {}},
        {"add TsDisk Status=Down", {}},
        {"remove TsDisk 17", {}},
    };
    for (const Case& each : cases) {
        EXPECT_THAT(NumbersAfter(each.command), ElementsAreArray(each.numbers)) << each.command;
    }
}

TEST_F(Events, AnOrphanHasNoPlaceThatCouldBeReported) {
    EXPECT_THAT(After("remove TsEnclosure 2"), IsEmpty());
    EXPECT_THAT(After("fail TsEnclosureIoModule 3"), IsEmpty());
    EXPECT_THAT(NumbersAfter("fail TsController 2"), ElementsAre("37 4 8 203 2 0 0 0"));
}

TEST_F(Events, TheTextIsOneLineThatTheDaemonTakesWhole) {
    EXPECT_THAT(After("fail TsDisk 3"),
                ElementsAre("13 1 37 202 3 0 0 0 64702.3 TsDisk@@@Disk '02-02' is down",
                            "18 24 14 207 1 0 0 0 64702.1 TsDiskFolder@@@Disk folder 'Größe & Übung 2' "
                            "is degraded"));
    EXPECT_THAT(After("set Tessera 1 PortsBalanced False"),
                ElementsAre("7 7 7 211 1 0 0 0 64702 Tessera@@@Array 'tessera-lab': PortsBalanced is False"));
    simulator_.Execute("set TsVolume 6 InstanceName \"two\\nlines\"");
    EXPECT_THAT(After("fail TsVolume 6"),
                ElementsAre("15 1 60 208 6 0 0 0 64702.6 TsVolume@@@Volume 'two lines' is down"));

    // 500 bytes end inside the last character that would fit in part.
    const std::string head = "15 1 60 208 7 0 0 0 64702.7 TsVolume@@@Volume '";
    std::string name(kGreatestEventText - head.size() - 1, 'x');
    simulator_.Execute("set TsVolume 7 InstanceName " + name + "ö");
    EXPECT_THAT(After("fail TsVolume 7"), ElementsAre(head + name));
    name.pop_back();
    simulator_.Execute("set TsVolume 7 InstanceName " + name + "ö");
    EXPECT_THAT(After("recover TsVolume 7"),
                ElementsAre("15 1 60 208 7 0 0 5" + head.substr(19) + name + "ö"));
}

TEST_F(Events, APersonCanReportWhatNoChangeCauses) {
    EXPECT_THAT(After("event \"4 4 4 1 0 0 0 0 \""), ElementsAre("4 4 4 1 0 0 0 0 "));
    EXPECT_THAT(After("event no numbers"), ElementsAre("no numbers"));
    EXPECT_THAT(After("misc the clock was set"), ElementsAre("0 0 0 201 0 0 0 0 64702@@@the clock was set"));
    EXPECT_THAT(After("scsi 3 4 12"),
                ElementsAre("0 0 0 213 12 3 4 0 64702@@@SCSI initiator device of type 3 has status 4"));
    EXPECT_THAT(After("scsi 3 4"),
                ElementsAre("0 0 0 213 0 3 4 0 64702@@@SCSI initiator device of type 3 has status 4"));
    EXPECT_TRUE(simulator_.Execute("stats").text.ends_with("counts of the sender\n"));
}

/** A daemon's listener that a test opens and closes, and a sender that tries again at once. */
class Sending : public testing::Test {
  protected:
    void Start(EventSender::Limits limits) {
        limits.retry = std::chrono::milliseconds(1);
        sender_.emplace(
            folder_ / "daemon", limits, [this](const SentEvent& event) { Note(sent_, event); },
            [this](const std::string& text) { Note(complaints_, text); });
        sender_->Start();
    }

    template <typename T>
    void Note(std::vector<T>& list, const T& entry) {
        const std::lock_guard<std::mutex> guard(mutex_);
        list.push_back(entry);
        noted_.notify_all();
    }

    template <typename T>
    void WaitFor(std::vector<T>& list, size_t count) {
        std::unique_lock<std::mutex> lock(mutex_);
        noted_.wait(lock, [&] { return list.size() >= count; });
    }

    /** Texts of one connection. */
    std::vector<std::string> Take(WireLinkServer& daemon) {
        WireLinkServerConnection connection(endpoint_, daemon.Accept(nullptr, nullptr, 0));
        std::vector<std::string> texts;
        protoIPCMsg::GPBIPCMsg message;
        while (connection.RecvGPBMsg(message) != 0) {
            EXPECT_EQ(message.msgtype(), protoIPCMsg::MGMT);
            EXPECT_EQ(message.mgmtmsg().cmdtype(), 0u);
            EXPECT_EQ(message.mgmtmsg().cmdspecific(), 1u);
            texts.push_back(message.mgmtmsg().addlarg());
        }
        return texts;
    }

    std::vector<std::string> Outcomes() {
        const std::lock_guard<std::mutex> guard(mutex_);
        std::vector<std::string> outcomes;
        for (const SentEvent& event : sent_) {
            outcomes.push_back(event.text + " " + event.outcome);
        }
        return outcomes;
    }

    TestFolder folder_;
    WireLinkEndpoint endpoint_ = WireLinkEndpoint::CreateLocalEndpoint(folder_ / "daemon", 60, 65536);
    std::mutex mutex_;
    std::condition_variable noted_;
    std::vector<SentEvent> sent_;
    std::vector<std::string> complaints_;
    std::optional<EventSender> sender_;
};

TEST_F(Sending, EventsWaitInOrderForADaemonThatIsAway) {
    Start({});
    for (const char* text : {"one", "two", "three"}) {
        sender_->Push(text);
    }
    WaitFor(complaints_, 1);
    EXPECT_EQ(sender_->Describe(), "events delivered 0, dropped 0, waiting 3\n");
    {
        WireLinkServer daemon(endpoint_);
        EXPECT_THAT(Take(daemon), ElementsAre("one", "two", "three"));
        // The connection has ended with the queue: another sender has its turn.
        sender_->Push("four");
        EXPECT_THAT(Take(daemon), ElementsAre("four"));
        WaitFor(sent_, 4);
    }
    EXPECT_EQ(complaints_.size(), 1u) << "once, though it has tried many times";
    sender_->Push("five");
    WaitFor(complaints_, 2);
    WireLinkServer daemon(endpoint_);
    EXPECT_THAT(Take(daemon), ElementsAre("five"));
    sender_->Stop();
    EXPECT_EQ(sender_->Describe(), "events delivered 5, dropped 0, waiting 0\n");
}

TEST_F(Sending, WhatNobodyTakesIsDroppedInTheEnd) {
    Start({.patience = std::chrono::milliseconds(0)});
    sender_->Push("one");
    WaitFor(sent_, 1);
    sender_->Push("two");
    WaitFor(sent_, 2);
    EXPECT_THAT(Outcomes(), ElementsAre("one dropped", "two dropped"));
    EXPECT_EQ(complaints_.size(), 1u);
}

TEST_F(Sending, AFullQueueRefusesTheNewest) {
    Start({.waiting = 2});
    for (const char* text : {"one", "two", "three"}) {
        sender_->Push(text);
    }
    EXPECT_THAT(Outcomes(), ElementsAre("three overflow"));
    WireLinkServer daemon(endpoint_);
    EXPECT_THAT(Take(daemon), ElementsAre("one", "two"));
}

TEST_F(Sending, ADaemonThatDoesNotReadHoldsUpNeitherChangesNorTheEnd) {
    WireLinkServer daemon(endpoint_);
    Start({.waiting = 100000, .farewell = std::chrono::milliseconds(1)});
    const std::string text(400, 'x');
    for (int i = 0; i < 5000; ++i) {  // more than a socket holds
        sender_->Push(text);
    }
    sender_->Stop();
    WaitFor(sent_, 5000);
    EXPECT_EQ(sent_.front().outcome, std::string("delivered"));
    EXPECT_EQ(sent_.back().outcome, std::string("dropped"));
}

TEST_F(Sending, TheLastEventsAreDeliveredBeforeTheEnd) {
    WireLinkServer daemon(endpoint_);
    Start({.farewell = std::chrono::hours(1)});
    sender_->Push("one");
    sender_->Push("two");
    sender_->Stop();
    EXPECT_THAT(Outcomes(), ElementsAre("one delivered", "two delivered"));
}

TEST_F(Sending, TheTraceTellsWhatBecameOfAnEvent) {
    EXPECT_EQ(Trace::Columns(SentEvent{"4 4 4 0 0 0 0 0 a\nb", "delivered", 1.5}),
              "event  delivered      1.50  4 4 4 0 0 0 0 0 a b");
}

}  // namespace
