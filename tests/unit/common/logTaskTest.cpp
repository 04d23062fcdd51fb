#include "apiMgmt/common/threadpool/logTask.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>

#include "tests/unit/common/fakeSleep.h"
#include "tests/unit/common/fakeSyslog.h"
#include "tests/unit/common/recordingLogger.h"

namespace {

using Lines = std::vector<std::string>;

LOGMessage Message(const std::string& text) {
    LOGMessage message;
    message.category = "test";
    message.message = text;
    return message;
}

class LogTask : public testing::Test {
  protected:
    ~LogTask() override {
        on_sleep = [](int64_t) {};
        record_.WaitForEndOfLogger();
    }
    LogRecord record_;
};

}  // namespace

TEST_F(LogTask, StopDrainsWhatIsQueuedAndDropsWhatComesLater) {
    LOGTask task(record_.MakeLogger());
    task.Post(Message("before the start"));
    ASSERT_TRUE(task.Start());
    EXPECT_TRUE(task.Start());
    record_.ShutGate();
    Lines wanted;
    for (int i = 0; i < 100; ++i) {
        task.Post(Message(std::to_string(i)));
        wanted.push_back("7|test|" + std::to_string(i));
    }
    int sleeps = 0;
    on_sleep = [&](int64_t duration_us) {
        EXPECT_EQ(duration_us, 2'000'000);
        ++sleeps;
        record_.OpenGate();
        EXPECT_EQ(record_.WaitFor(100), wanted);
    };
    task.Stop();
    task.Stop();
    EXPECT_EQ(sleeps, 1);
    on_sleep = [](int64_t) {};
    task.Post(Message("dropped"));
    ASSERT_TRUE(task.Start());
    task.Post(Message("after a second start"));
    wanted.push_back("7|test|after a second start");
    EXPECT_EQ(record_.WaitFor(101), wanted);
}

TEST_F(LogTask, MayEndWhileItsThreadIsStillBusy) {
    auto task = std::make_unique<LOGTask>(record_.MakeLogger());
    ASSERT_TRUE(task->Start());
    record_.ShutGate();
    task->Post(Message("slow"));
    task->Post(Message("behind it"));
    record_.WaitForVisitor();
    task.reset();
    record_.OpenGate();
    EXPECT_EQ(record_.WaitFor(2), (Lines{"7|test|slow", "7|test|behind it"}));
}

TEST_F(LogTask, KeepsTheOrderOfEachOfSeveralCallersAndMayBeStoppedUnderThem) {
    constexpr int callers = 4;
    constexpr int messages_each = 200;
    LOGTask task(record_.MakeLogger());
    ASSERT_TRUE(task.Start());
    std::atomic<bool> go_on{true};
    std::vector<std::thread> threads;
    for (int caller = 0; caller < callers; ++caller) {
        threads.emplace_back([&, caller] {
            for (int i = 0; i < messages_each || go_on; ++i) {
                task.Post(Message(std::to_string(caller) + " " + std::to_string(i)));
            }
        });
    }
    const Lines lines = record_.WaitFor(callers * messages_each / 2);
    task.Stop();
    go_on = false;
    for (std::thread& each : threads) {
        each.join();
    }
    int next[callers] = {};
    for (const std::string& line : lines) {
        const int caller = line[7] - '0';
        EXPECT_EQ(line, "7|test|" + std::to_string(caller) + " " + std::to_string(next[caller]++));
    }
}
