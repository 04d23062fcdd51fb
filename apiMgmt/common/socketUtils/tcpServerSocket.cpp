#include "apiMgmt/common/socketUtils/tcpServerSocket.h"

#include <arpa/inet.h>
#include <sys/socket.h>

#include "apiMgmt/common/utils/stringUtil.h"

namespace {

constexpr int kBacklog = 128;
constexpr const char kSource[] = "apiMgmt/common/socketUtils/tcpServerSocket";

}  // namespace

// The base class is already constructed, so it closes the descriptor if this throws.
TCPServerSocket::TCPServerSocket(int port, bool loopbackOnly) {
    // The line numbers in the errors are constants that readers may search for.
    if (!Create(false)) {
        throw APISocketError(kSource, 16, FormatString("Socket creation failed at port [%d]", port));
    }
    if (!Bind(port, loopbackOnly)) {
        throw APISocketError(kSource, 26, FormatString("Bind failed at port [%d]", port));
    }
    if (listen(descriptor_, kBacklog) != 0) {
        throw APISocketError(kSource, 36, FormatString("Listen called failed at port [%d]", port));
    }
}

bool TCPServerSocket::Bind(int port, bool loopbackOnly) {
    if (port < 0 || port > 65535) {
        return false;  // would be truncated to another port
    }
    address_.sin_family = AF_INET;
    address_.sin_port = htons(static_cast<uint16_t>(port));
    address_.sin_addr.s_addr = htonl(loopbackOnly ? INADDR_LOOPBACK : INADDR_ANY);
    return bind(descriptor_, reinterpret_cast<const sockaddr*>(&address_), sizeof address_) == 0;
}

int TCPServerSocket::Accept(sockaddr_in& peer) {
    peer = {};
    socklen_t length = sizeof peer;
    return accept4(descriptor_, reinterpret_cast<sockaddr*>(&peer), &length, SOCK_CLOEXEC);
}
