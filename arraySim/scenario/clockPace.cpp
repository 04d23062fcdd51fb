#include "arraySim/scenario/clockPace.h"

namespace arraysim {

int64_t ClockPace::Now_ms() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start_)
        .count();
}

bool ClockPace::SleepUntil(int64_t time_ms) {
    std::unique_lock<std::mutex> lock(mutex_);
    return !stopped_.wait_until(lock, start_ + std::chrono::milliseconds(time_ms), [&] { return stop_; });
}

bool ClockPace::WaitForExchange(const std::string& command, const std::string& object, size_t seen) {
    return simulator_.WaitForExchange(command, object, seen);
}

void ClockPace::Stop() {
    simulator_.StopWaiting();
    const std::lock_guard<std::mutex> guard(mutex_);
    stop_ = true;
    stopped_.notify_all();
}

}  // namespace arraysim
