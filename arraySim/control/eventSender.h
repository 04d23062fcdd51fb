#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

#include "apiMgmt/common/wirelink/wireLink.h"

namespace arraysim {

/** The outcome of an event. */
struct SentEvent {
    std::string text;
    /** delivered; dropped: nobody took it in time; overflow: too many were waiting */
    const char* outcome = "";
    double waited_ms = 0;  ///< from the change to the outcome
};

/**
 * Sends events to the daemon's local socket, in the order in which they were pushed. It has its own thread,
 * since the daemon can be slow: it queries this very simulator while it handles an event. If the daemon is
 * not there, the sender retries until the event's timeout. A connection lasts as long as events are waiting,
 * since the daemon serves one sender at a time.
 */
class EventSender {
  public:
    struct Limits {
        size_t waiting = 1000;                      ///< events that may wait
        std::chrono::milliseconds patience{30000};  ///< for one event
        std::chrono::milliseconds retry{100};       ///< between two tries to reach the daemon
        std::chrono::milliseconds farewell{2000};   ///< how long Stop waits for the last events
    };
    using Observer = std::function<void(const SentEvent&)>;
    /** Called once each time that the daemon is found missing. */
    using Complaint = std::function<void(const std::string&)>;

    /** Both are called from the threads that use the sender, and calls may overlap. */
    EventSender(const std::string& socket_path, Limits limits, Observer observer, Complaint complaint);
    ~EventSender();
    EventSender(const EventSender&) = delete;
    EventSender& operator=(const EventSender&) = delete;

    void Start();
    /** Tries once more to deliver what is waiting, within the farewell. */
    void Stop();

    /** Hands over the text of a trap command; never blocks. */
    void Push(std::string text);

    /** A human-readable line with counts. */
    std::string Describe() const;

  private:
    using Clock = std::chrono::steady_clock;

    struct Waiting {
        std::string text;
        Clock::time_point since;
    };

    void Loop();
    bool WaitForEvent();
    void DeliverWaiting();
    void SendWaiting(WireLinkClient& client);
    void DropOutdated();
    /** Takes the first event out of the queue and tells what became of it. */
    void Settle(const char* outcome, size_t& count);
    void Rest();

    const WireLinkEndpoint endpoint_;
    const Limits limits_;
    const Observer observer_;
    const Complaint complaint_;
    std::thread thread_;
    bool daemon_away_ = false;  ///< the thread's own

    mutable std::mutex mutex_;  ///< guards all below
    std::condition_variable wake_;
    std::condition_variable ended_;
    std::deque<Waiting> queue_;
    int descriptor_ = -1;  ///< of the connection that is open, so that Stop can end it
    bool stopping_ = false;
    bool finished_ = false;
    size_t delivered_ = 0;
    size_t dropped_ = 0;
};

}  // namespace arraysim
