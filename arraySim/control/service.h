#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "apiMgmt/common/wirelink/wireLink.h"
#include "arraySim/control/simulator.h"

namespace arraysim {

/** One exchange as it was served. */
struct ServedExchange {
    unsigned connection = 0;  ///< number of the connection, from 1
    ExchangeRecord record;
    size_t bytes = 0;  ///< of the answer's frame
    double elapsed_ms = 0;
};

using ExchangeObserver = std::function<void(const ServedExchange&)>;

/**
 * The API manager's socket: a thread that accepts, and one for each connection, so that an answer that hangs
 * or is late delays no other connection. The socket file exists from Start to Stop, except while the fault
 * stop-listening is on.
 */
class Service {
  public:
    /** observer: called after each exchange from the thread that served it; calls may overlap. */
    Service(Simulator& simulator, const std::string& socket_path, ExchangeObserver observer);
    ~Service();
    Service(const Service&) = delete;
    Service& operator=(const Service&) = delete;

    /** Listens; throws WireLinkError. */
    void Start();
    /** Ends every connection and waits for the threads. */
    void Stop();

    /** Makes the socket follow the simulator's faults; returns when it does. */
    void FollowListening();

  private:
    struct Peer;

    void AcceptLoop();
    void WakeAcceptLoop() const;
    void AdjustListening();
    void AcceptOne();
    void Serve(Peer& peer);
    bool ServeOne(Peer& peer);
    void DropFinishedPeers();

    Simulator& simulator_;
    const WireLinkEndpoint endpoint_;
    const ExchangeObserver observer_;
    std::optional<WireLinkServer> server_;  ///< accept thread only, once it runs
    std::list<Peer> peers_;                 ///< accept thread only
    unsigned connections_ = 0;              ///< accept thread only
    int wake_descriptor_ = -1;
    std::thread accept_thread_;

    std::mutex mutex_;  ///< guards the connections of peers and what follows
    std::condition_variable adjusted_;
    unsigned adjustments_wanted_ = 0;
    unsigned adjustments_done_ = 0;
    std::atomic<bool> stopping_ = false;
};

}  // namespace arraysim
