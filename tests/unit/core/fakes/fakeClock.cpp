#include "tests/unit/core/fakes/fakeClock.h"

#include <atomic>
#include <chrono>
#include <string>
#include <thread>

#include "apiMgmt/common/platform/clock.h"
#include "tests/unit/core/fakes/transcript.h"

namespace {

std::atomic<int64_t> now_of_test_us{fake_clock::kStart_us};
std::atomic<bool> sleeps_are_written{false};
const std::thread::id main_thread = std::this_thread::get_id();

}  // namespace

namespace fake_clock {

void set(int64_t now_us) {
    now_of_test_us = now_us;
}
void advance(int64_t duration_us) {
    now_of_test_us += duration_us;
}
void write_sleeps(bool write) {
    sleeps_are_written = write;
}

void pass(const char* kind, int64_t duration_us) {
    if (std::this_thread::get_id() != main_thread) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        return;
    }
    now_of_test_us += duration_us;
    if (sleeps_are_written)
        transcript::add(std::string(kind) + " " + std::to_string(duration_us) + " us");
}

}  // namespace fake_clock

timeval ClockNow() {
    const int64_t now_us = now_of_test_us;
    return {.tv_sec = now_us / 1'000'000, .tv_usec = now_us % 1'000'000};
}

int64_t ClockNowUs() {
    return now_of_test_us;
}
int64_t ClockNowMs() {
    return now_of_test_us / 1000;
}

void ClockSleepMicroseconds(int64_t duration_us) {
    fake_clock::pass("sleep", duration_us);
}
