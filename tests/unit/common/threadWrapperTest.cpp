#include "apiMgmt/common/threadpool/threadWrapper.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <memory>

#include "tests/unit/common/fakeThreads.h"
#include "tests/unit/common/threadName.h"

namespace {

// A thread that reports its name and then waits until it may exit.
struct Visit {
    std::promise<std::string> name;
    std::promise<void> leave;
    std::promise<void> done;
    std::atomic<int> starts{0};
};

void* MakeVisit(void* argument) {
    auto* visit = static_cast<Visit*>(argument);
    ++visit->starts;
    visit->name.set_value(ThisThreadsName());
    visit->leave.get_future().wait();
    visit->done.set_value();
    return nullptr;
}

}  // namespace

TEST(ThreadWrapper, RunsOneThreadThatOutlivesIt) {
    Visit visit;
    auto wrapper = std::make_unique<THREADWrapper>();
    EXPECT_EQ(wrapper->Run("first", nullptr, &visit), -1);
    {
        const NoNewThreads none;
        EXPECT_GT(wrapper->Run("second", MakeVisit, &visit), 0);
    }
    EXPECT_EQ(wrapper->Run("A name that is long", MakeVisit, &visit), 0);  // it works after a failure
    EXPECT_EQ(visit.name.get_future().get().substr(0, 15), "A name that is ");
    EXPECT_EQ(wrapper->Run("again", MakeVisit, &visit), 0);
    EXPECT_EQ(wrapper->Run("again", nullptr, &visit), 0);
    wrapper.reset();
    visit.leave.set_value();
    visit.done.get_future().wait();
    EXPECT_EQ(visit.starts, 1);
}
