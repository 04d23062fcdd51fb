#include <unistd.h>

#include "apiMgmt/common/platform/peerUser.h"

std::optional<uid_t> PeerUser(int descriptor) {
    uid_t user;
    gid_t group;
    if (getpeereid(descriptor, &user, &group) != 0)
        return std::nullopt;
    return user;
}
