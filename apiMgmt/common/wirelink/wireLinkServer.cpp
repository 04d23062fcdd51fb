#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "apiMgmt/common/wirelink/localSocket.h"
#include "apiMgmt/common/wirelink/wireLink.h"

namespace {

constexpr mode_t kSocketMode = S_IRUSR | S_IWUSR;

/** Makes room at the path: a socket that an earlier process left is removed, anything else is not ours. */
void RemoveStaleSocket(const WireLinkEndpoint& endpoint) {
    struct stat status;
    const char* path = endpoint.path().c_str();
    if (lstat(path, &status) != 0) {
        if (errno != ENOENT)
            ThrowWireLinkError(endpoint, "cannot look at the path", errno);
        return;
    }
    if (!S_ISSOCK(status.st_mode))
        ThrowWireLinkError(endpoint, "there is a file that is no socket");
    if (unlink(path) != 0 && errno != ENOENT)
        ThrowWireLinkError(endpoint, "cannot remove the old socket", errno);
}

/** Removes the file of a server that did not come to be. */
class UnlinkUnlessKept {
  public:
    explicit UnlinkUnlessKept(const std::string& path) : path_(path) {}
    ~UnlinkUnlessKept() {
        if (!kept_)
            unlink(path_.c_str());
    }
    UnlinkUnlessKept(const UnlinkUnlessKept&) = delete;
    UnlinkUnlessKept& operator=(const UnlinkUnlessKept&) = delete;

    void Keep() { kept_ = true; }

  private:
    const std::string& path_;
    bool kept_ = false;
};

}  // namespace

WireLinkServer::WireLinkServer(const WireLinkEndpoint& endpoint) : endpoint_(endpoint) {
    const sockaddr_un address = LocalAddress(endpoint);
    OwnedDescriptor descriptor = NewLocalSocket(endpoint);
    RemoveStaleSocket(endpoint);
    // On Linux the file takes over this mode at its birth. Where the call fails the mode is set before
    // listen, and nobody can connect until then.
    (void)fchmod(descriptor.get(), kSocketMode);
    if (bind(descriptor.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        ThrowWireLinkError(endpoint, "cannot bind", errno);
    UnlinkUnlessKept file(endpoint_.path());
    struct stat status;
    if (lstat(endpoint.path().c_str(), &status) != 0 || chmod(endpoint.path().c_str(), kSocketMode) != 0)
        ThrowWireLinkError(endpoint, "cannot set the mode of the socket", errno);
    if (listen(descriptor.get(), SOMAXCONN) != 0)
        ThrowWireLinkError(endpoint, "cannot listen", errno);
    device_ = status.st_dev;
    inode_ = status.st_ino;
    file.Keep();
    descriptor_ = descriptor.Release();
}

WireLinkServer::~WireLinkServer() {
    // A later server may have replaced the file. The number of ours is not given to another one as long as
    // the descriptor is open.
    struct stat status;
    if (lstat(endpoint_.path().c_str(), &status) == 0 && status.st_dev == device_ && status.st_ino == inode_)
        unlink(endpoint_.path().c_str());
    close(descriptor_);
}

int WireLinkServer::Accept(sockaddr* address, unsigned* address_length, int flags) {
    for (;;) {
        const int peer = accept4(descriptor_, address, address_length, flags | SOCK_CLOEXEC);
        if (peer >= 0)
            return peer;
        if (errno != EINTR && errno != ECONNABORTED)
            ThrowWireLinkError(endpoint_, "cannot accept", errno);
    }
}

WireLinkServerConnection::WireLinkServerConnection(const WireLinkEndpoint& endpoint, int descriptor)
    : WireLinkSocket(endpoint, descriptor, PollDescriptor) {}
