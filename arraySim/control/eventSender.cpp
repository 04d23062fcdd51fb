#include "arraySim/control/eventSender.h"

#include <sys/socket.h>

#include "apiMgmt/common/utils/stringUtil.h"
#include "tools/mgmtSend/mgmtMessage.h"

namespace arraysim {

namespace {

// A listener that is busy with an event for longer than this, while its socket is full, loses the connection.
constexpr long kStep_s = 20;
constexpr unsigned long kSize_bytes = 65536;

}  // namespace

EventSender::EventSender(const std::string& socket_path, Limits limits, Observer observer,
                         Complaint complaint)
    : endpoint_(WireLinkEndpoint::CreateLocalEndpoint(socket_path, kStep_s, kSize_bytes)),
      limits_(limits),
      observer_(std::move(observer)),
      complaint_(std::move(complaint)) {}

EventSender::~EventSender() {
    Stop();
}

void EventSender::Start() {
    thread_ = std::thread([this] { Loop(); });
}

void EventSender::Stop() {
    if (!thread_.joinable()) {
        return;
    }
    {
        std::unique_lock<std::mutex> lock(mutex_);
        stopping_ = true;
        wake_.notify_all();
        ended_.wait_for(lock, limits_.farewell, [this] { return finished_; });
        if (descriptor_ >= 0) {
            shutdown(descriptor_, SHUT_RDWR);
        }
    }
    thread_.join();
}

void EventSender::Push(std::string text) {
    {
        const std::lock_guard<std::mutex> guard(mutex_);
        if (queue_.size() < limits_.waiting) {
            queue_.push_back({std::move(text), Clock::now()});
            wake_.notify_all();
            return;
        }
        ++dropped_;
    }
    observer_({std::move(text), "overflow", 0});
}

std::string EventSender::Describe() const {
    const std::lock_guard<std::mutex> guard(mutex_);
    return FormatString("events delivered %zu, dropped %zu, waiting %zu\n", delivered_, dropped_,
                        queue_.size());
}

void EventSender::Loop() {
    while (WaitForEvent()) {
        DeliverWaiting();
    }
    const std::lock_guard<std::mutex> guard(mutex_);
    finished_ = true;
    ended_.notify_all();
}

bool EventSender::WaitForEvent() {
    std::unique_lock<std::mutex> lock(mutex_);
    wake_.wait(lock, [this] { return stopping_ || !queue_.empty(); });
    return !queue_.empty();
}

void EventSender::DeliverWaiting() {
    try {
        WireLinkClient client(endpoint_);
        SendWaiting(client);
        daemon_away_ = false;
    } catch (const WireLinkError& error) {
        if (!daemon_away_) {
            complaint_(std::string("an event waits for the daemon: ") + error.what());
            daemon_away_ = true;
        }
        DropOutdated();
        Rest();
    }
}

void EventSender::SendWaiting(WireLinkClient& client) {
    std::unique_lock<std::mutex> lock(mutex_);
    descriptor_ = client.descriptor();
    try {
        while (!queue_.empty()) {
            const std::string text = queue_.front().text;
            lock.unlock();
            client.SendGPBMsg(mgmtsend::BuildMessage(MGMT_SPECIFIC_SEND_TRAP, text));
            Settle("delivered", delivered_);
            lock.lock();
        }
    } catch (const WireLinkError&) {
        lock.lock();
        descriptor_ = -1;
        throw;
    }
    descriptor_ = -1;  // before the client closes: Stop must not shut down a number that is somebody else's
}

void EventSender::DropOutdated() {
    for (;;) {
        {
            const std::lock_guard<std::mutex> guard(mutex_);
            if (queue_.empty() || (!stopping_ && Clock::now() - queue_.front().since < limits_.patience)) {
                return;
            }
        }
        Settle("dropped", dropped_);
    }
}

void EventSender::Settle(const char* outcome, size_t& count) {
    SentEvent event;
    {
        const std::lock_guard<std::mutex> guard(mutex_);
        const std::chrono::duration<double, std::milli> waited = Clock::now() - queue_.front().since;
        event = {std::move(queue_.front().text), outcome, waited.count()};
        queue_.pop_front();
        ++count;
    }
    observer_(event);
}

void EventSender::Rest() {
    std::unique_lock<std::mutex> lock(mutex_);
    wake_.wait_for(lock, limits_.retry, [this] { return stopping_; });
}

}  // namespace arraysim
