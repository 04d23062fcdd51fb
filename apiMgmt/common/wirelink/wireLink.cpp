#include "apiMgmt/common/wirelink/wireLink.h"

#include <google/protobuf/message.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>

#include "apiMgmt/common/platform/peerUser.h"
#include "apiMgmt/common/wirelink/fieldCount.h"
#include "apiMgmt/common/wirelink/frameBody.h"
#include "apiMgmt/common/wirelink/localSocket.h"

bool PollDescriptor(int descriptor, short events, int timeout_ms) {
    pollfd entry{.fd = descriptor, .events = events, .revents = 0};
    const int ready = poll(&entry, 1, timeout_ms);
    if (ready < 0 && errno != EINTR)
        throw WireLinkError("poll: " + std::system_category().message(errno));
    return ready > 0;
}

// ---- frames ----

namespace {

constexpr size_t kHeaderSize = 4;
constexpr int kMaximumFieldCount = 65'536;
using FrameHeader = std::array<char, kHeaderSize>;

FrameHeader HeaderOf(size_t body_length) {
    FrameHeader header;
    for (size_t i = 0; i < kHeaderSize; ++i)
        header[i] = static_cast<char>(body_length >> (8 * (kHeaderSize - 1 - i)) & 0xff);
    return header;
}

size_t BodyLengthOf(const FrameHeader& header) {
    size_t length = 0;
    for (char byte : header)
        length = length << 8 | static_cast<unsigned char>(byte);
    return length;
}

bool WouldBlock(int error) {
    return error == EAGAIN || error == EWOULDBLOCK;
}

/** Reads one frame, whose bytes share one deadline. */
class FrameReader {
  public:
    FrameReader(const WireLinkEndpoint& endpoint, int descriptor, const WireLinkWait& wait)
        : endpoint_(endpoint), descriptor_(descriptor), wait_(wait), deadline_(endpoint.timeout_s()) {}

    /** Returns false if the peer has closed before the first byte. */
    bool ReadHeader(FrameHeader& header) {
        size_t count = 0;
        while (count < kHeaderSize) {
            const size_t step = ReadSome({header.data() + count, kHeaderSize - count});
            if (step == 0 && count == 0)
                return false;
            if (step == 0)
                ThrowWireLinkError(endpoint_, "the peer closed within the header of a frame");
            count += step;
        }
        return true;
    }

    void ReadBody(FrameBody& body) {
        while (body.missing() > 0) {
            const size_t step = ReadSome(body.Room());
            if (step == 0)
                ThrowWireLinkError(endpoint_, "the peer closed within a frame; " +
                                                  std::to_string(body.missing()) +
                                                  " bytes of its body are missing");
            body.Filled(step);
        }
    }

  private:
    /** Returns the number of bytes read, or 0 if the peer has closed. */
    size_t ReadSome(std::span<char> room) {
        for (;;) {
            const ssize_t count = recv(descriptor_, room.data(), room.size(), MSG_DONTWAIT);
            if (count >= 0)
                return static_cast<size_t>(count);
            if (errno == ECONNRESET)  // closed without reading everything we sent
                return 0;
            if (errno == EINTR)
                continue;
            if (!WouldBlock(errno))
                ThrowWireLinkError(endpoint_, "cannot receive", errno);
            if (!deadline_.WaitFor(descriptor_, POLLIN, wait_))
                ThrowTimeLimit(endpoint_, "receiving a frame");
        }
    }

    const WireLinkEndpoint& endpoint_;
    int descriptor_;
    const WireLinkWait& wait_;
    StepDeadline deadline_;
};

void SendAll(const WireLinkEndpoint& endpoint, int descriptor, const WireLinkWait& wait,
             std::span<const char> bytes) {
    const StepDeadline deadline(endpoint.timeout_s());
    while (!bytes.empty()) {
        const ssize_t count = send(descriptor, bytes.data(), bytes.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
        if (count >= 0)
            bytes = bytes.subspan(static_cast<size_t>(count));
        else if (errno == EPIPE || errno == ECONNRESET)
            ThrowWireLinkError(endpoint, "the peer closed while a frame was sent");
        else if (errno != EINTR && !WouldBlock(errno))
            ThrowWireLinkError(endpoint, "cannot send", errno);
        else if (WouldBlock(errno) && !deadline.WaitFor(descriptor, POLLOUT, wait))
            ThrowTimeLimit(endpoint, "sending a frame");
    }
}

void CheckLength(const WireLinkEndpoint& endpoint, size_t length) {
    if (length > endpoint.greatest_body())
        ThrowWireLinkError(endpoint, "body of " + std::to_string(length) +
                                         " bytes is too long; the maximum is " +
                                         std::to_string(endpoint.greatest_body()));
}

/** The partial functions keep protobuf from writing to standard error; our error lists what is missing. */
void Parse(const WireLinkEndpoint& endpoint, FrameBody& body, size_t length,
           google::protobuf::Message& message) {
    const FieldCount fields = CountFields(body, *message.GetDescriptor(), kMaximumFieldCount);
    if (fields == FieldCount::many)
        ThrowWireLinkError(endpoint,
                           "the body has more than " + std::to_string(kMaximumFieldCount) + " fields");
    body.Rewind();
    if (fields == FieldCount::malformed ||
        !message.ParsePartialFromBoundedZeroCopyStream(&body, static_cast<int>(length)))
        ThrowWireLinkError(endpoint, "the body does not parse");
    if (!message.IsInitialized())
        ThrowWireLinkError(endpoint,
                           "the body does not parse; missing " + message.InitializationErrorString());
}

}  // namespace

WireLinkSocket::WireLinkSocket(const WireLinkEndpoint& endpoint, int descriptor, WireLinkWait wait)
    : endpoint_(endpoint), descriptor_(descriptor), wait_(std::move(wait)) {}

WireLinkSocket::~WireLinkSocket() {
    close(descriptor_);
}

size_t WireLinkSocket::RecvGPBMsg(google::protobuf::Message& message) {
    FrameReader reader(endpoint_, descriptor_, wait_);
    FrameHeader header;
    if (!reader.ReadHeader(header))
        return 0;
    const size_t length = BodyLengthOf(header);
    CheckLength(endpoint_, length);  // before allocating the body
    FrameBody body(length, endpoint_.size_bytes());
    reader.ReadBody(body);
    Parse(endpoint_, body, length, message);
    return kHeaderSize + length;
}

void WireLinkSocket::SendGPBMsg(const google::protobuf::Message& message) {
    if (!message.IsInitialized())
        ThrowWireLinkError(endpoint_,
                           "the message cannot be sent; missing " + message.InitializationErrorString());
    const size_t length = message.ByteSizeLong();
    CheckLength(endpoint_, length);
    const FrameHeader header = HeaderOf(length);
    std::string frame(header.data(), kHeaderSize);
    if (!message.AppendPartialToString(&frame))
        ThrowWireLinkError(endpoint_, "the message cannot be serialised");
    SendAll(endpoint_, descriptor_, wait_, frame);
}

// ---- client ----

namespace {

constexpr int kBacklogRetryMs = 10;

/**
 * Any user may create a socket in the directory, so the first one can listen at a free path. A request
 * contains the session key, so it is sent only to a process of this user or of root.
 */
void CheckPeer(const WireLinkEndpoint& endpoint, int descriptor) {
    const std::optional<uid_t> user = PeerUser(descriptor);
    if (!user)
        ThrowWireLinkError(endpoint, "cannot determine the listener's user", errno);
    if (*user != 0 && *user != geteuid())
        ThrowWireLinkError(endpoint,
                           "the listener runs as user " + std::to_string(*user) + ", which is not trusted");
}

/**
 * A local connect fails if the backlog is full, and poll(2) does not report when it has room again, so it is
 * retried.
 */
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
        ThrowWireLinkError(endpoint(), "the peer closed without a response");
}

// ---- server ----

namespace {

constexpr mode_t kSocketMode = S_IRUSR | S_IWUSR;

/** Removes a socket that an earlier process has left at the path. Throws for any other file. */
void RemoveStaleSocket(const WireLinkEndpoint& endpoint) {
    struct stat status;
    const char* path = endpoint.path().c_str();
    if (lstat(path, &status) != 0) {
        if (errno != ENOENT)
            ThrowWireLinkError(endpoint, "cannot stat the path", errno);
        return;
    }
    if (!S_ISSOCK(status.st_mode))
        ThrowWireLinkError(endpoint, "exists but is not a socket");
    if (unlink(path) != 0 && errno != ENOENT)
        ThrowWireLinkError(endpoint, "cannot remove the old socket", errno);
}

/** Removes the socket file if the server's constructor throws. */
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
    // On Linux, bind creates the file with this mode. Where fchmod fails, chmod sets the mode before listen,
    // and nobody can connect until then.
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
    // A later server may have replaced the file. The inode number cannot be reused while the descriptor is
    // open.
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
