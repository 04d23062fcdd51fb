#include "apiMgmt/common/wirelink/localSocket.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <system_error>

OwnedDescriptor::~OwnedDescriptor() {
    if (valid())
        close(descriptor_);
}

int OwnedDescriptor::Release() {
    const int descriptor = descriptor_;
    descriptor_ = -1;
    return descriptor;
}

namespace {

// Kept within what poll takes as milliseconds; some three weeks.
constexpr long kGreatestLimit_s = INT_MAX / 1000;

}  // namespace

StepDeadline::StepDeadline(long limit_s)
    : end_(std::chrono::steady_clock::now() +
           std::chrono::seconds(std::clamp(limit_s, 0L, kGreatestLimit_s))) {}

int StepDeadline::RemainingMs() const {
    const auto remaining =
        std::chrono::ceil<std::chrono::milliseconds>(end_ - std::chrono::steady_clock::now());
    return static_cast<int>(std::max<std::chrono::milliseconds::rep>(remaining.count(), 0));
}

bool StepDeadline::WaitFor(int descriptor, short events, const WireLinkWait& wait) const {
    while (const int remaining_ms = RemainingMs()) {
        if (wait(descriptor, events, remaining_ms))
            return true;
    }
    return false;
}

bool PollDescriptor(int descriptor, short events, int timeout_ms) {
    pollfd entry{.fd = descriptor, .events = events, .revents = 0};
    const int ready = poll(&entry, 1, timeout_ms);
    if (ready < 0 && errno != EINTR)
        throw WireLinkError("poll: " + std::system_category().message(errno));
    return ready > 0;
}

sockaddr_un LocalAddress(const WireLinkEndpoint& endpoint) {
    sockaddr_un address{};
    const std::string& path = endpoint.path();
    if (path.empty())
        throw WireLinkError("the path of a local socket is empty");
    if (path.size() >= sizeof(address.sun_path))
        ThrowWireLinkError(endpoint, "the path is too long for a local socket");
    if (path.find('\0') != std::string::npos)
        throw WireLinkError("the path of a local socket holds a zero character");
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    return address;
}

OwnedDescriptor NewLocalSocket(const WireLinkEndpoint& endpoint, int flags) {
    const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | flags, 0);
    if (descriptor < 0)
        ThrowWireLinkError(endpoint, "cannot create a socket", errno);
    return OwnedDescriptor(descriptor);
}

void ThrowWireLinkError(const WireLinkEndpoint& endpoint, const std::string& what) {
    throw WireLinkError(endpoint.path() + ": " + what);
}

void ThrowWireLinkError(const WireLinkEndpoint& endpoint, const std::string& what, int error) {
    ThrowWireLinkError(endpoint, what + ": " + std::system_category().message(error));
}

void ThrowTimeLimit(const WireLinkEndpoint& endpoint, const char* step) {
    ThrowWireLinkError(endpoint,
                       "time limit of " + std::to_string(endpoint.timeout_s()) + " s reached, " + step);
}
