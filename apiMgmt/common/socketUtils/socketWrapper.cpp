#include "apiMgmt/common/socketUtils/socketWrapper.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <new>
#include <vector>

namespace {

constexpr timeval kReceiveTimeLimit{900, 0};

constexpr size_t kHeaderSize = 8;
constexpr size_t kLengthOffset = 4;

}  // namespace

SocketWrapper::~SocketWrapper() {
    Close();
}

void SocketWrapper::Close() {
    if (descriptor_ != -1) {
        close(descriptor_);
        descriptor_ = -1;
    }
}

bool SocketWrapper::Create(bool noReuse) {
    Close();
    // Close-on-exec, because a child process must not keep the port in use.
    descriptor_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (descriptor_ == -1) {
        return false;
    }
    const int reuse = 1;
    if (!noReuse && setsockopt(descriptor_, SOL_SOCKET, SO_REUSEADDR, &reuse, sizeof reuse) != 0) {
        printf("SocketWrapper::Create(): error on setsockopt() for SO_REUSEADDR, errno: %d", errno);
        Close();
        return false;
    }
    if (SetReceiveTimeLimit(kReceiveTimeLimit) != 0) {
        printf("SocketWrapper::Create(): error on setsockopt() for SO_RCVTIMEO, errno : %d", errno);
        Close();
        return false;
    }
    return true;
}

int SocketWrapper::SetNonBlocking(bool nonBlocking) {
    const int flags = fcntl(descriptor_, F_GETFL);
    if (flags < 0) {
        return flags;
    }
    return fcntl(descriptor_, F_SETFL, nonBlocking ? flags | O_NONBLOCK : flags & ~O_NONBLOCK);
}

int SocketWrapper::SetReceiveTimeLimit(const timeval& limit) {
    return setsockopt(descriptor_, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
}

// Receives at least one byte, or returns the reason for receiving none. Adds the number of bytes to
// `received`.
int SocketWrapper::Receive(char* buffer, size_t size, size_t& received) {
    ssize_t count = 0;
    do {
        count = recv(descriptor_, buffer, size, 0);
    } while (count < 0 && errno == EINTR);
    if (count > 0) {
        received += static_cast<size_t>(count);
        return kSuccess;
    }
    return count < 0 && errno == EAGAIN ? kNoData : kError;
}

int SocketWrapper::Read(void* buffer, size_t size, size_t& received) {
    received = 0;
    if (!IsOpen() || buffer == nullptr || size == 0) {
        return kError;
    }
    return Receive(static_cast<char*>(buffer), size, received);
}

int SocketWrapper::ReadExact(void* buffer, size_t size) {
    if (!IsOpen() || buffer == nullptr || size == 0) {
        return kError;
    }
    size_t received = 0;
    while (received < size) {
        const int result = Receive(static_cast<char*>(buffer) + received, size - received, received);
        if (result != kSuccess) {
            return result;
        }
    }
    return kSuccess;
}

int SocketWrapper::Write(const void* buffer, size_t size) {
    if (!IsOpen() || buffer == nullptr || size == 0) {
        return kError;
    }
    (void)send(descriptor_, buffer, size, MSG_NOSIGNAL);
    return kSuccess;
}

int SocketWrapper::SendMessage(const void* buffer, uint32_t size, uint16_t code) {
    if (!IsOpen() || buffer == nullptr || size == 0) {
        return kError;
    }
    std::vector<char> frame(kHeaderSize + size);
    const uint16_t wire_code = htons(code);
    const uint32_t wire_length = htonl(size);
    memcpy(frame.data(), &wire_code, sizeof wire_code);
    memcpy(frame.data() + kLengthOffset, &wire_length, sizeof wire_length);
    memcpy(frame.data() + kHeaderSize, buffer, size);
    return Write(frame.data(), frame.size());
}

int SocketWrapper::ReceiveMessage(std::unique_ptr<char[]>& body, uint32_t& size) {
    body.reset();
    size = 0;
    char header[kHeaderSize];
    int result = ReadExact(header, sizeof header);
    if (result != kSuccess) {
        return result;
    }
    uint32_t wire_length = 0;
    memcpy(&wire_length, header + kLengthOffset, sizeof wire_length);
    const size_t length = ntohl(wire_length);
    if (length == 0) {
        return kSuccess;
    }
    // Not initialised, so memory is used only as the peer fills it.
    std::unique_ptr<char[]> block(new (std::nothrow) char[length + 1]);
    if (block == nullptr) {
        return kError;
    }
    result = ReadExact(block.get(), length);
    if (result != kSuccess) {
        return result;
    }
    block[length] = '\0';
    body = std::move(block);
    size = static_cast<uint32_t>(length);
    return kSuccess;
}

std::string SocketWrapper::GetAddressText() const {
    char text[INET_ADDRSTRLEN];
    return inet_ntop(AF_INET, &address_.sin_addr, text, sizeof text) == nullptr ? "" : text;
}
