#include "apiMgmt/common/utils/heartbeat/heartbeatMonitor.h"

#include <poll.h>
#include <pthread.h>
#include <syslog.h>

#include <algorithm>
#include <cerrno>
#include <exception>
#include <list>
#include <vector>

#include "apiMgmt/common/platform/clock.h"
#include "apiMgmt/common/platform/process.h"
#include "apiMgmt/common/socketUtils/tcpServerSocket.h"

int gPingListenPort = 0;

namespace {

constexpr size_t kMaximumPeers = 64;
constexpr int64_t kPingTimeLimit_us = 5 * kSecondUs;
constexpr int64_t kPauseAfterFailedAccept_us = 10 * kMillisecondUs;
constexpr int64_t kPauseWithoutPort_us = kSecondUs;

class Peer {
  public:
    explicit Peer(int descriptor) : connection_(descriptor), end_us_(ClockNowUs() + kPingTimeLimit_us) {
        connection_.SetNonBlocking(true);
    }

    // Reads what has arrived and echoes it once it is complete. Returns true if the connection must be
    // closed.
    bool IsDone() {
        size_t received = 0;
        const int result = connection_.Read(ping_ + count_, sizeof ping_ - count_, received);
        if (result == SocketWrapper::kNoData) {
            return ClockNowUs() >= end_us_;
        }
        end_us_ = ClockNowUs() + kPingTimeLimit_us;
        count_ += received;
        if (count_ == sizeof ping_) {
            connection_.Write(ping_, sizeof ping_);
        }
        return result != SocketWrapper::kSuccess || count_ == sizeof ping_;
    }

    int descriptor() const { return connection_.descriptor(); }
    int64_t end_us() const { return end_us_; }

  private:
    SocketWrapper connection_;
    int64_t end_us_;
    size_t count_ = 0;
    char ping_[4];
};

using Peers = std::list<Peer>;  // oldest first

void WaitForNews(const TCPServerSocket& listener, const Peers& peers) {
    std::vector<pollfd> watched{{.fd = listener.descriptor(), .events = POLLIN, .revents = 0}};
    int64_t timeout_us = kPingTimeLimit_us;
    for (const Peer& peer : peers) {
        watched.push_back({.fd = peer.descriptor(), .events = POLLIN, .revents = 0});
        timeout_us = std::min(timeout_us, std::max<int64_t>(peer.end_us() - ClockNowUs(), 0));
    }
    poll(watched.data(), static_cast<nfds_t>(watched.size()),
         static_cast<int>(timeout_us / kMillisecondUs + 1));
}

void AcceptPeer(TCPServerSocket& listener, Peers& peers) {
    sockaddr_in address;
    const int descriptor = listener.Accept(address);
    if (descriptor >= 0) {
        peers.emplace_back(descriptor);
    } else if (errno != EAGAIN && errno != EINTR && errno != ECONNABORTED) {
        // Without free descriptors, the connection stays in the queue and every accept fails immediately.
        ClockSleepMicroseconds(kPauseAfterFailedAccept_us);
    }
    if (peers.size() > kMaximumPeers) {
        peers.pop_front();
    }
}

[[noreturn]] void ServePings(int port) {
    TCPServerSocket listener(port, true);
    listener.SetNonBlocking(true);
    for (Peers peers;;) {
        WaitForNews(listener, peers);
        AcceptPeer(listener, peers);
        peers.remove_if([](Peer& peer) { return peer.IsDone(); });
    }
}

}  // namespace

int StartHeartbeatMonitor(int port) {
    gPingListenPort = port;
    pthread_t thread;
    const int error = pthread_create(&thread, nullptr, HeartbeatThreadRoutine, &gPingListenPort);
    if (error != 0) {
        syslog(LOG_WARNING,
               "Failed to initialize heartbeat monitor listener thread at port[%d]. Error code(%d).", port,
               error);
        return error;
    }
    pthread_detach(thread);
    return 0;
}

void* HeartbeatThreadRoutine(void* argument) {
    NameThisThread("HeartBeat Monitor");
    if (argument == nullptr) {
        syslog(LOG_WARNING, "Heartbeat monitor listener port not specified");
        return nullptr;
    }
    // A previous copy that is slow to exit may still hold the port.
    for (bool is_first = true;; is_first = false) {
        try {
            ServePings(*static_cast<const int*>(argument));
        } catch (const std::exception& error) {
            if (is_first) {
                syslog(LOG_WARNING, "Heartbeat monitor waits for its port: %s", error.what());
            }
            ClockSleepMicroseconds(kPauseWithoutPort_us);
        }
    }
}
