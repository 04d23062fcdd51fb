#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "apiMgmt/common/platform/peerUser.h"
#include "apiMgmt/common/wirelink/localSocket.h"
#include "apiMgmt/common/wirelink/wireLink.h"

namespace {

/** Local connects wait for one thing only, a full backlog, and poll does not tell when it has room again.
    The limit for sending counts for connect as well. */
void LimitConnect(const WireLinkEndpoint& endpoint, int descriptor, int remaining_ms) {
    const timeval limit{.tv_sec = remaining_ms / 1000, .tv_usec = remaining_ms % 1000 * 1000L};
    if (setsockopt(descriptor, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit) != 0)
        ThrowWireLinkError(endpoint, "cannot set the time limit", errno);
}

/** The folder of the sockets is open to all users: whoever is first may listen at a free path. A request holds the
    session key, so it goes to a process of this user or of root alone. */
void CheckPeer(const WireLinkEndpoint& endpoint, int descriptor) {
    const std::optional<uid_t> user = PeerUser(descriptor);
    if (!user)
        ThrowWireLinkError(endpoint, "cannot find out who listens", errno);
    if (*user != 0 && *user != geteuid())
        ThrowWireLinkError(endpoint, "user " + std::to_string(*user) + " listens, who is not trusted");
}

int Connected(const WireLinkEndpoint& endpoint) {
    const sockaddr_un address = LocalAddress(endpoint);
    OwnedDescriptor descriptor = NewLocalSocket(endpoint);
    const StepDeadline deadline(endpoint.timeout_s());
    for (;;) {
        // At least one try of a millisecond: no limit at all is what 0 would mean to the kernel.
        LimitConnect(endpoint, descriptor.get(), std::max(deadline.RemainingMs(), 1));
        if (connect(descriptor.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
            CheckPeer(endpoint, descriptor.get());
            return descriptor.Release();
        }
        if (errno != EINTR && errno != EAGAIN)
            ThrowWireLinkError(endpoint, "cannot connect", errno);
        if (deadline.RemainingMs() == 0)
            ThrowTimeLimit(endpoint, "connecting");
    }
}

}  // namespace

WireLinkClient::WireLinkClient(const WireLinkEndpoint& endpoint)
    : WireLinkSocket(endpoint, Connected(endpoint)) {}

void WireLinkClient::SendReceiveMessage(const google::protobuf::Message& request,
                                        google::protobuf::Message& response) {
    SendGPBMsg(request);
    if (RecvGPBMsg(response) == 0)
        ThrowWireLinkError(endpoint(), "the peer closed without an answer");
}
