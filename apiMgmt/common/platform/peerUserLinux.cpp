#include <sys/socket.h>

#include "apiMgmt/common/platform/peerUser.h"

std::optional<uid_t> PeerUser(int descriptor) {
    ucred peer{};
    socklen_t size = sizeof peer;
    if (getsockopt(descriptor, SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0)
        return std::nullopt;
    return peer.uid;
}
