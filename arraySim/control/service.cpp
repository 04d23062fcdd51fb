#include "arraySim/control/service.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>

#include "arraySim/faults/delivery.h"

namespace arraysim {

namespace {

// The daemon's limits for this endpoint, so that both reject the same messages.
constexpr long kTimeout_s = 900;
constexpr unsigned long kSize_bytes = 5242880;

// Limits the threads for a peer that never closes its connections. The daemon needs only two.
constexpr size_t kMaximumPeers = 256;

}  // namespace

/** A connection with its thread. */
struct Service::Peer {
    unsigned number = 0;
    std::unique_ptr<WireLinkServerConnection> connection;  ///< null when the thread is about to exit
    std::thread thread;
    std::atomic<bool> finished = false;
};

Service::Service(Simulator& simulator, const std::string& socket_path, ExchangeObserver observer)
    : simulator_(simulator),
      endpoint_(WireLinkEndpoint::CreateLocalEndpoint(socket_path, kTimeout_s, kSize_bytes)),
      observer_(std::move(observer)) {}

Service::~Service() {
    Stop();
}

void Service::Start() {
    wake_descriptor_ = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (wake_descriptor_ < 0) {
        throw WireLinkError("cannot create an eventfd");
    }
    server_.emplace(endpoint_);
    accept_thread_ = std::thread([this] { AcceptLoop(); });
    FollowListening();
}

void Service::Stop() {
    if (accept_thread_.joinable()) {
        stopping_ = true;
        WakeAcceptLoop();
        accept_thread_.join();
    }
    if (wake_descriptor_ >= 0) {
        close(wake_descriptor_);
        wake_descriptor_ = -1;
    }
}

void Service::FollowListening() {
    std::unique_lock<std::mutex> lock(mutex_);
    const unsigned wanted = ++adjustments_wanted_;
    WakeAcceptLoop();
    adjusted_.wait(lock, [&] { return adjustments_done_ >= wanted || stopping_; });
}

void Service::WakeAcceptLoop() const {
    const uint64_t one = 1;
    static_cast<void>(!write(wake_descriptor_, &one, sizeof one));
}

void Service::AcceptLoop() {
    while (!stopping_) {
        pollfd waits[2] = {{wake_descriptor_, POLLIN, 0}, {server_ ? server_->descriptor() : -1, POLLIN, 0}};
        poll(waits, 2, -1);
        if ((waits[0].revents & POLLIN) != 0) {
            AdjustListening();
        } else if ((waits[1].revents & POLLIN) != 0) {
            AcceptOne();
        }
        DropFinishedPeers();
    }
    server_.reset();
    {
        const std::lock_guard<std::mutex> guard(mutex_);
        for (Peer& peer : peers_) {
            if (peer.connection != nullptr) {
                shutdown(peer.connection->descriptor(), SHUT_RDWR);
            }
        }
        adjusted_.notify_all();
    }
    for (Peer& peer : peers_) {
        peer.thread.join();
    }
    peers_.clear();
}

void Service::AdjustListening() {
    uint64_t wakes = 0;
    static_cast<void>(!read(wake_descriptor_, &wakes, sizeof wakes));
    unsigned wanted = 0;
    {
        const std::lock_guard<std::mutex> guard(mutex_);
        wanted = adjustments_wanted_;
    }
    const bool listening = simulator_.Listening();
    if (!listening) {
        server_.reset();
    } else if (!server_) {
        try {
            server_.emplace(endpoint_);
        } catch (const WireLinkError& error) {
            std::fprintf(stderr, "arraySim: cannot listen again: %s\n", error.what());
        }
    }
    const std::lock_guard<std::mutex> guard(mutex_);
    adjustments_done_ = wanted;
    adjusted_.notify_all();
}

void Service::AcceptOne() {
    int descriptor = -1;
    try {
        descriptor = server_->Accept(nullptr, nullptr, 0);
    } catch (const WireLinkError& error) {
        std::fprintf(stderr, "arraySim: %s\n", error.what());
        std::this_thread::sleep_for(
            std::chrono::milliseconds(100));  // out of descriptors: wait until some are closed
        return;
    }
    auto connection = std::make_unique<WireLinkServerConnection>(endpoint_, descriptor);
    const unsigned number = ++connections_;
    if (simulator_.TakeRefusal() || peers_.size() >= kMaximumPeers) {
        ServedExchange refused;
        refused.connection = number;
        refused.record.command = "connect";
        refused.record.object = "-";
        refused.record.outcome = "refused";
        connection.reset();
        observer_(refused);
        return;
    }
    Peer& peer = peers_.emplace_back();
    peer.number = number;
    peer.connection = std::move(connection);
    peer.thread = std::thread([this, &peer] { Serve(peer); });
}

void Service::Serve(Peer& peer) {
    try {
        while (!stopping_ && ServeOne(peer)) {
        }
    } catch (const std::exception& error) {
        ServedExchange failed;
        failed.connection = peer.number;
        failed.record.command = "-";
        failed.record.object = "-";
        failed.record.outcome = std::string("broken: ") + error.what();
        observer_(failed);
    }
    {
        // Under the lock, because the accept thread must not shut down a reused descriptor.
        const std::lock_guard<std::mutex> guard(mutex_);
        peer.connection.reset();
    }
    peer.finished = true;
}

bool Service::ServeOne(Peer& peer) {
    protoIPCMsg::GPBIPCMsg request;
    if (peer.connection->RecvGPBMsg(request) == 0) {
        return false;
    }
    const auto start = std::chrono::steady_clock::now();
    const Exchange exchange = simulator_.Handle(request);
    const Delivered delivered = Deliver(*peer.connection, endpoint_, exchange.response, exchange.delivery);
    const std::chrono::duration<double, std::milli> elapsed = std::chrono::steady_clock::now() - start;
    observer_({peer.number, exchange.record, delivered.bytes, elapsed.count()});
    return delivered.connection_good;
}

void Service::DropFinishedPeers() {
    peers_.remove_if([](Peer& peer) {
        if (!peer.finished) {
            return false;
        }
        peer.thread.join();
        return true;
    });
}

}  // namespace arraysim
