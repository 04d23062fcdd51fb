// Plays peers of the heartbeat monitor, which connect, send fragments, close and let time pass, while accept
// fails or succeeds. After each iteration of the monitor's loop, every peer must have received what a simple
// model says: its first four bytes once they are complete, and nothing before. The connection must be closed
// after these, after 5 silent seconds, and if it is the oldest of more than 64. No port is opened.

#include "apiMgmt/common/utils/heartbeat/heartbeatMonitor.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <list>
#include <string>

#include "apiMgmt/common/platform/clock.h"
#include "fuzz/lib/fuzzCheck.h"
#include "fuzz/lib/fuzzInput.h"

namespace {

constexpr size_t kPingSize = 4;
constexpr size_t kMaximumPeers = 64;
constexpr int64_t kTimeout_us = 5'000'000;

struct End {};  // thrown at the end of the input, to exit from the monitor's loop

int64_t now_us = 0;

class Peer {
  public:
    explicit Peer(int descriptor) : descriptor_(descriptor), deadline_us_(now_us + kTimeout_us) {}
    ~Peer() { close(descriptor_); }
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;

    void Send(std::string_view bytes) {
        if (!is_closed_ && send(descriptor_, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT) >= 0)
            unread_ += bytes;
    }

    void ShutDown() {
        shutdown(descriptor_, SHUT_WR);
        is_closed_ = true;
    }

    void Drop() { is_served_ = false; }
    bool is_served() const { return is_served_; }

    // Updates the expectations by one iteration of the monitor's loop.
    void Expect() {
        const std::string step = unread_.substr(0, kPingSize - ping_.size());
        unread_.erase(0, step.size());
        ping_ += step;
        if (!step.empty())
            deadline_us_ = now_us + kTimeout_us;
        if (ping_.size() == kPingSize)
            echo_ = ping_;
        is_served_ = ping_.size() < kPingSize && (!step.empty() || (!is_closed_ && now_us < deadline_us_));
    }

    void Check() {
        char bytes[16];
        ssize_t count = 0;
        while ((count = recv(descriptor_, bytes, sizeof bytes, MSG_DONTWAIT)) > 0)
            received_.append(bytes, static_cast<size_t>(count));
        FuzzCheck(received_ == echo_, "the echo differs from the peer's four bytes");
        FuzzCheck((count < 0 && errno == EAGAIN) == is_served_, "closed too early or late");
    }

  private:
    int descriptor_;
    int64_t deadline_us_;
    bool is_closed_ = false;
    bool is_served_ = true;
    std::string unread_, ping_, echo_, received_;
};

FuzzInput* input = nullptr;
std::list<Peer> peers;  // the oldest first
size_t watched = 0;
int failure = 0;  // of the latest accept
bool has_paused = false;

void DropOldest() {
    const auto oldest = std::ranges::find_if(peers, &Peer::is_served);
    if (std::ranges::count_if(peers, &Peer::is_served) > static_cast<std::ptrdiff_t>(kMaximumPeers))
        oldest->Drop();
}

int Connect() {
    int pair[2];
    FuzzCheck(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, pair) == 0, "no socket pair");
    peers.emplace_back(pair[0]);
    return pair[1];
}

int Fail(int error) {
    errno = error;
    return -1;
}

void ActOfPeer() {
    if (peers.empty())
        return;
    Peer& peer = *std::next(peers.begin(), static_cast<std::ptrdiff_t>(input->Below(peers.size())));
    if (input->OnceIn(4))
        peer.ShutDown();
    else
        peer.Send(input->Text(1 + input->Below(6)));
}

// Returns the descriptor of a new peer, or -1 with errno set.
int NextEvent() {
    static constexpr int kErrors[] = {EAGAIN, EINTR, ECONNABORTED, EMFILE};
    switch (input->Below(8)) {
        case 0:
        case 1:
        case 2:
            return Connect();
        case 3:
            now_us += static_cast<int64_t>(input->Below(65536)) * 100;
            return Fail(EAGAIN);
        case 4:
            return Fail(kErrors[input->Below(std::size(kErrors))]);
        default:
            ActOfPeer();
            return Fail(EAGAIN);
    }
}

}  // namespace

// ---- replacements for system calls and the clock ----

extern "C" int bind(int, const sockaddr*, socklen_t) {
    return 0;
}
extern "C" int listen(int, int) {
    return 0;
}

extern "C" int poll(pollfd*, nfds_t count, int timeout_ms) {
    watched = count - 1;
    FuzzCheck(timeout_ms > 0 && timeout_ms <= 5001, "the loop spins or sleeps too long");
    return 0;
}

extern "C" int accept4(int, sockaddr*, socklen_t*, int) {
    FuzzCheck(watched == static_cast<size_t>(std::ranges::count_if(peers, &Peer::is_served)),
              "wrong number of peers");
    FuzzCheck(has_paused == (failure == EMFILE), "unexpected or missing pause");
    std::ranges::for_each(peers, &Peer::Check);
    if (input->IsEmpty())
        throw End();
    const int descriptor = NextEvent();
    failure = descriptor < 0 ? errno : 0;
    has_paused = false;
    DropOldest();
    for (Peer& peer : peers) {
        if (peer.is_served())
            peer.Expect();
    }
    errno = failure;
    return descriptor;
}

timeval ClockNow() {
    return {};
}
int64_t ClockNowUs() {
    return now_us;
}
int64_t ClockNowMs() {
    return now_us / 1000;
}
void ClockSleepMicroseconds(int64_t duration_us) {
    has_paused = duration_us > 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzInput bytes(data, std::min<size_t>(size, 4096));
    input = &bytes;
    now_us = 0;
    failure = 0;
    has_paused = false;
    int port = 1;
    try {
        HeartbeatThreadRoutine(&port);
    } catch (const End&) {
    }
    peers.clear();
    return 0;
}
