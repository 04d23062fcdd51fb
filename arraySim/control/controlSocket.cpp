#include "arraySim/control/controlSocket.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace arraysim {

namespace {

// Timeout of each send and receive, because a silent peer blocks all others.
constexpr timeval kTimeout = {5, 0};
constexpr size_t kMaximumLine = 1 << 20;

[[noreturn]] void Fail(const std::string& path, const std::string& what) {
    throw ControlError(path + ": " + what);
}

[[noreturn]] void FailWithErrno(const std::string& path, const std::string& what) {
    Fail(path, what + ": " + std::strerror(errno));
}

sockaddr_un AddressOf(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.empty() || path.size() >= sizeof address.sun_path) {
        Fail(path, "empty or too long for a socket path");
    }
    std::memcpy(address.sun_path, path.c_str(), path.size());
    return address;
}

/** An owned file descriptor. */
class Descriptor {
  public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() {
        if (number_ >= 0) {
            close(number_);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int get() const { return number_; }
    int Release() { return std::exchange(number_, -1); }

  private:
    int number_;
};

bool Connect(int descriptor, const sockaddr_un& address) {
    return connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

int NewSocket(const std::string& path) {
    const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (descriptor < 0) {
        FailWithErrno(path, "cannot create a socket");
    }
    return descriptor;
}

/** Removes the socket of a simulator that has exited. Throws ControlError if anything else is at the path. */
void RemoveStale(const std::string& path, const sockaddr_un& address) {
    struct stat status;
    if (lstat(path.c_str(), &status) != 0) {
        return;
    }
    if (!S_ISSOCK(status.st_mode)) {
        Fail(path, "exists but is not a socket");
    }
    const Descriptor probe(NewSocket(path));
    if (Connect(probe.get(), address)) {
        Fail(path, "another simulator is running on this socket");
    }
    unlink(path.c_str());
}

bool SendAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = send(descriptor, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (count < 0 && errno != EINTR) {
            return false;
        }
        bytes.remove_prefix(count < 0 ? 0 : static_cast<size_t>(count));
    }
    return true;
}

/** Receives until the end of the stream, about `limit` bytes or, if one_line, a line feed. */
std::string Receive(int descriptor, bool one_line, size_t limit) {
    std::string text;
    char buffer[16384];
    while (text.size() < limit) {
        const ssize_t count = recv(descriptor, buffer, sizeof buffer, 0);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            break;
        }
        text.append(buffer, static_cast<size_t>(count));
        if (one_line && text.find('\n') != std::string::npos) {
            break;
        }
    }
    return text;
}

}  // namespace

ControlServer::ControlServer(Simulator& simulator, std::string path)
    : simulator_(simulator), path_(std::move(path)) {}

ControlServer::~ControlServer() {
    Stop();
}

void ControlServer::Start() {
    const sockaddr_un address = AddressOf(path_);
    RemoveStale(path_, address);
    Descriptor listener(NewSocket(path_));
    fchmod(listener.get(), S_IRUSR | S_IWUSR);  // on Linux, bind creates the file with this mode
    if (bind(listener.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        FailWithErrno(path_, "cannot bind");
    }
    wake_descriptor_ = eventfd(0, EFD_CLOEXEC);
    if (chmod(path_.c_str(), S_IRUSR | S_IWUSR) != 0 || wake_descriptor_ < 0 ||
        listen(listener.get(), 16) != 0) {
        const int reason = errno;
        unlink(path_.c_str());
        errno = reason;
        FailWithErrno(path_, "cannot listen");
    }
    listener_ = listener.Release();
    thread_ = std::thread([this] { Loop(); });
}

void ControlServer::Stop() {
    if (thread_.joinable()) {
        stopping_ = true;
        const uint64_t one = 1;
        static_cast<void>(!write(wake_descriptor_, &one, sizeof one));
        thread_.join();
        unlink(path_.c_str());
        close(listener_);
    }
    if (wake_descriptor_ >= 0) {
        close(wake_descriptor_);
        wake_descriptor_ = -1;
    }
}

void ControlServer::Loop() {
    while (!stopping_) {
        pollfd waits[2] = {{wake_descriptor_, POLLIN, 0}, {listener_, POLLIN, 0}};
        poll(waits, 2, -1);
        if ((waits[1].revents & POLLIN) == 0) {
            continue;
        }
        const Descriptor peer(accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC));
        if (peer.get() >= 0) {
            ServePeer(peer.get());
        }
    }
}

void ControlServer::ServePeer(int descriptor) {
    setsockopt(descriptor, SOL_SOCKET, SO_RCVTIMEO, &kTimeout, sizeof kTimeout);
    setsockopt(descriptor, SOL_SOCKET, SO_SNDTIMEO, &kTimeout, sizeof kTimeout);
    const std::string received = Receive(descriptor, true, kMaximumLine);
    const size_t end = received.find('\n');
    Reply reply{false, "incomplete line; a command must end with a line feed"};
    if (end != std::string::npos) {
        reply = simulator_.Execute(std::string_view(received).substr(0, end));
    }
    SendAll(descriptor, reply.good ? "ok\n" + reply.text : "error: " + reply.text + "\n");
}

Reply Tell(const std::string& path, const std::string& line) {
    const Descriptor descriptor(NewSocket(path));
    if (!Connect(descriptor.get(), AddressOf(path))) {
        FailWithErrno(path, "no simulator responds");
    }
    if (line.find('\n') != std::string::npos) {
        return {false, "a command must be a single line"};
    }
    if (!SendAll(descriptor.get(), line + "\n")) {
        FailWithErrno(path, "cannot send");
    }
    const std::string reply = Receive(descriptor.get(), false, SIZE_MAX);
    if (reply.starts_with("ok\n")) {
        return {true, reply.substr(3)};
    }
    constexpr std::string_view kError = "error: ";
    if (!reply.starts_with(kError) || reply.back() != '\n') {
        Fail(path, "incomplete reply from the simulator");
    }
    return {false, reply.substr(kError.size(), reply.size() - kError.size() - 1)};
}

}  // namespace arraysim
