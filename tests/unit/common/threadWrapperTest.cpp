#include "apiMgmt/common/threadpool/threadWrapper.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <memory>

namespace {

// A thread that tells its name and then waits for leave to end.
struct Visit {
    std::promise<std::string> name;
    std::promise<void> leave;
    std::promise<void> done;
    std::atomic<int> starts{0};
};

void* MakeVisit(void* argument) {
    auto* visit = static_cast<Visit*>(argument);
    ++visit->starts;
    char name[64] = {};
    pthread_getname_np(pthread_self(), name, sizeof name);
    visit->name.set_value(name);
    visit->leave.get_future().wait();
    visit->done.set_value();
    return nullptr;
}

std::string ThisThreadsName() {
    char name[64] = {};
    pthread_getname_np(pthread_self(), name, sizeof name);
    return name;
}

}  // namespace

TEST(ThreadWrapper, RunsOneThreadThatOutlivesIt) {
    Visit visit;
    auto wrapper = std::make_unique<THREADWrapper>();
    EXPECT_EQ(wrapper->Run("first", nullptr, &visit), -1);
    EXPECT_EQ(wrapper->Run("A name that is long", MakeVisit, &visit), 0);  // -1 has not used it up
    EXPECT_EQ(visit.name.get_future().get(), "A name that is ");
    EXPECT_EQ(wrapper->Run("again", MakeVisit, &visit), 0);
    EXPECT_EQ(wrapper->Run("again", nullptr, &visit), 0);
    wrapper.reset();
    visit.leave.set_value();
    visit.done.get_future().wait();
    EXPECT_EQ(visit.starts, 1);
}

TEST(ThreadWrapper, AnEmptyNameLeavesTheThreadUnnamed) {
    Visit visit;
    THREADWrapper wrapper;
    EXPECT_EQ(wrapper.Run("", MakeVisit, &visit), 0);
    EXPECT_EQ(visit.name.get_future().get(), ThisThreadsName());
    visit.leave.set_value();
    visit.done.get_future().wait();
}

TEST(ThreadWrapper, AFailedStartCanBeRepeated) {
    pthread_attr_t usual, impossible;
    ASSERT_EQ(pthread_getattr_default_np(&usual), 0);
    ASSERT_EQ(pthread_attr_init(&impossible), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&impossible, size_t{1} << 50), 0);
    Visit visit;
    THREADWrapper wrapper;
    ASSERT_EQ(pthread_setattr_default_np(&impossible), 0);
    EXPECT_GT(wrapper.Run("name", MakeVisit, &visit), 0);
    ASSERT_EQ(pthread_setattr_default_np(&usual), 0);
    EXPECT_EQ(wrapper.Run("name", MakeVisit, &visit), 0);
    visit.leave.set_value();
    visit.done.get_future().wait();
    EXPECT_EQ(visit.starts, 1);
    pthread_attr_destroy(&impossible);
    pthread_attr_destroy(&usual);
}
