#include "arraySim/control/eventSender.h"

#include <sys/socket.h>

#include "apiMgmt/common/utils/stringUtil.h"
#include "tools/mgmtSend/mgmtMessage.h"

namespace arraysim {

namespace {

// Timeout of a send, which blocks while the daemon is busy and its socket is full.
constexpr long kStep_s = 20;
constexpr unsigned long kSize_bytes = 65536;

}  // namespace

EventSender::EventSender(const std::string& socket_path, Limits limits, Observer observer,
                         WarningFunction warn)
    : endpoint_(WireLinkEndpoint::CreateLocalEndpoint(socket_path, kStep_s, kSize_bytes)),
      limits_(limits),
      observer_(std::move(observer)),
      warn_(std::move(warn)) {}

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
        ended_.wait_for(lock, limits_.stop_timeout, [this] { return finished_; });
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
        daemon_absent_ = false;
    } catch (const WireLinkError& error) {
        if (!daemon_absent_) {
            warn_(std::string("cannot deliver an event yet, still trying: ") + error.what());
            daemon_absent_ = true;
        }
        DropOutdated();
        WaitForRetry();
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
            RemoveFirst("delivered", delivered_);
            lock.lock();
        }
    } catch (const WireLinkError&) {
        lock.lock();
        descriptor_ = -1;
        throw;
    }
    descriptor_ = -1;  // before the client closes it, because Stop must not shut down a reused descriptor
}

void EventSender::DropOutdated() {
    for (;;) {
        {
            const std::lock_guard<std::mutex> guard(mutex_);
            if (queue_.empty() || (!stopping_ && Clock::now() - queue_.front().since < limits_.timeout)) {
                return;
            }
        }
        RemoveFirst("dropped", dropped_);
    }
}

void EventSender::RemoveFirst(const char* outcome, size_t& count) {
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

void EventSender::WaitForRetry() {
    std::unique_lock<std::mutex> lock(mutex_);
    wake_.wait_for(lock, limits_.retry, [this] { return stopping_; });
}

}  // namespace arraysim
