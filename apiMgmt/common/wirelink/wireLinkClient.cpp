#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "apiMgmt/common/platform/peerUser.h"
#include "apiMgmt/common/wirelink/localSocket.h"
#include "apiMgmt/common/wirelink/wireLink.h"

namespace {

constexpr int kBacklogRetryMs = 10;

/** The folder of the sockets is open to all users: whoever is first may listen at a free path. A request holds the
    session key, so it goes to a process of this user or of root alone. */
void CheckPeer(const WireLinkEndpoint& endpoint, int descriptor) {
    const std::optional<uid_t> user = PeerUser(descriptor);
    if (!user)
        ThrowWireLinkError(endpoint, "cannot find out who listens", errno);
    if (*user != 0 && *user != geteuid())
        ThrowWireLinkError(endpoint, "user " + std::to_string(*user) + " listens, who is not trusted");
}

/** A local connect waits only for room in the backlog, and poll(2) does not report that: try again now and then. */
int Connected(const WireLinkEndpoint& endpoint, const WireLinkWait& wait) {
    const sockaddr_un address = LocalAddress(endpoint);
    OwnedDescriptor descriptor = NewLocalSocket(endpoint, SOCK_NONBLOCK);
    const StepDeadline deadline(endpoint.timeout_s());
    while (connect(descriptor.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        if (errno != EINTR && errno != EAGAIN)
            ThrowWireLinkError(endpoint, "cannot connect", errno);
        if (deadline.RemainingMs() == 0)
            ThrowTimeLimit(endpoint, "connecting");
        wait(-1, 0, std::min(deadline.RemainingMs(), kBacklogRetryMs));
    }
    CheckPeer(endpoint, descriptor.get());
    return descriptor.Release();
}

}  // namespace

WireLinkClient::WireLinkClient(const WireLinkEndpoint& endpoint, WireLinkWait wait)
    : WireLinkSocket(endpoint, Connected(endpoint, wait), wait) {}

void WireLinkClient::SendReceiveMessage(const google::protobuf::Message& request,
                                        google::protobuf::Message& response) {
    SendGPBMsg(request);
    if (RecvGPBMsg(response) == 0)
        ThrowWireLinkError(endpoint(), "the peer closed without an answer");
}
