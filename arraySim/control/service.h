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

/** A completed exchange. */
struct ServedExchange {
    unsigned connection = 0;  ///< number of the connection, from 1
    ExchangeRecord record;
    size_t bytes = 0;  ///< of the response's frame, as far as it was sent
    double elapsed_ms = 0;
};

using ExchangeObserver = std::function<void(const ServedExchange&)>;

/**
 * The API manager's socket: one thread accepts connections, and each connection has its own thread, so that a
 * hanging or delayed response does not affect other connections. The socket file exists from Start to Stop,
 * except during the fault stop-listening.
 */
class Service {
  public:
    /** observer: called after each exchange by the thread that served it, also concurrently. */
    Service(Simulator& simulator, const std::string& socket_path, ExchangeObserver observer);
    ~Service();
    Service(const Service&) = delete;
    Service& operator=(const Service&) = delete;

    /** Starts to listen. Throws WireLinkError. */
    void Start();
    /** Closes all connections and waits for the threads to exit. */
    void Stop();

    /** Opens or closes the socket according to Simulator::Listening. Blocks until that is done. */
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

    std::mutex mutex_;  ///< guards the connections of peers and the members below
    std::condition_variable adjusted_;
    unsigned adjustments_wanted_ = 0;
    unsigned adjustments_done_ = 0;
    std::atomic<bool> stopping_ = false;
};

}  // namespace arraysim
