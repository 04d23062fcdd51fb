#include "apiMgmt/common/wirelink/localSocket.h"

#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <system_error>

namespace {

// About three weeks, so that the milliseconds fit the int of poll.
constexpr long kMaximumTimeout_s = INT_MAX / 1000;

}  // namespace

StepDeadline::StepDeadline(long limit_s)
    : end_(std::chrono::steady_clock::now() +
           std::chrono::seconds(std::clamp(limit_s, 0L, kMaximumTimeout_s))) {}

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

sockaddr_un LocalAddress(const WireLinkEndpoint& endpoint) {
    sockaddr_un address{};
    const std::string& path = endpoint.path();
    if (path.empty())
        throw WireLinkError("the path of a local socket is empty");
    if (path.size() >= sizeof(address.sun_path))
        ThrowWireLinkError(endpoint, "the path is too long for a local socket");
    if (path.find('\0') != std::string::npos)
        throw WireLinkError("the path of a local socket contains a zero character");
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
                       "timeout of " + std::to_string(endpoint.timeout_s()) + " s expired while " + step);
}
