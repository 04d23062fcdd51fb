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
    /** delivered; dropped: not delivered in time; overflow: too many events were waiting */
    const char* outcome = "";
    double waited_ms = 0;  ///< from the change to the outcome
};

/**
 * A sender of events to the daemon's local socket, in the order in which they were pushed. It has its own
 * thread because the daemon can be slow: it queries this very simulator while it handles an event. If the
 * daemon is not running, the sender retries until the event's timeout. It closes a connection when no events
 * are waiting, because the daemon serves one sender at a time.
 */
class EventSender {
  public:
    struct Limits {
        size_t waiting = 1000;                         ///< maximum number of waiting events
        std::chrono::milliseconds timeout{30000};      ///< timeout of an event
        std::chrono::milliseconds retry{100};          ///< between two attempts to connect
        std::chrono::milliseconds stop_timeout{2000};  ///< maximum time that Stop waits for the last events
    };
    using Observer = std::function<void(const SentEvent&)>;
    /** Called once whenever the daemon turns out not to be running. */
    using WarningFunction = std::function<void(const std::string&)>;

    /** Both functions are called from any thread that uses the sender, also concurrently. */
    EventSender(const std::string& socket_path, Limits limits, Observer observer, WarningFunction warn);
    ~EventSender();
    EventSender(const EventSender&) = delete;
    EventSender& operator=(const EventSender&) = delete;

    void Start();
    /** Delivers waiting events for at most `stop_timeout`, then stops the thread. */
    void Stop();

    /** Queues a trap command. Never blocks. */
    void Push(std::string text);

    /** Returns a human-readable line of counts. */
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
    /** Removes the first event from the queue and reports its outcome. */
    void RemoveFirst(const char* outcome, size_t& count);
    void WaitForRetry();

    const WireLinkEndpoint endpoint_;
    const Limits limits_;
    const Observer observer_;
    const WarningFunction warn_;
    std::thread thread_;
    bool daemon_absent_ = false;  ///< used by the thread only

    mutable std::mutex mutex_;  ///< guards all below
    std::condition_variable wake_;
    std::condition_variable ended_;
    std::deque<Waiting> queue_;
    int descriptor_ = -1;  ///< of the open connection, so that Stop can shut it down
    bool stopping_ = false;
    bool finished_ = false;
    size_t delivered_ = 0;
    size_t dropped_ = 0;
};

}  // namespace arraysim
