#include "apiMgmt/common/socketUtils/tcpServerSocket.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

uint16_t PortOf(const SocketWrapper& socket) {
    sockaddr_in address{};
    socklen_t length = sizeof address;
    getsockname(socket.descriptor(), reinterpret_cast<sockaddr*>(&address), &length);
    return ntohs(address.sin_port);
}

void Connect(SocketWrapper& client, uint16_t port) {
    ASSERT_TRUE(client.Create(false));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    ASSERT_EQ(connect(client.descriptor(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
}

}  // namespace

TEST(TCPServerSocket, AcceptsAPeerAndTellsWhoItIs) {
    TCPServerSocket server(0, true);
    EXPECT_EQ(server.GetAddressText(), "127.0.0.1");
    SocketWrapper client;
    Connect(client, PortOf(server));
    sockaddr_in peer{};
    SocketWrapper accepted(server.Accept(peer));
    ASSERT_TRUE(accepted.IsOpen());
    EXPECT_EQ(ntohl(peer.sin_addr.s_addr), INADDR_LOOPBACK);
    EXPECT_EQ(ntohs(peer.sin_port), PortOf(client));
    for (const SocketWrapper* socket : {static_cast<SocketWrapper*>(&server), &accepted}) {
        EXPECT_EQ(fcntl(socket->descriptor(), F_GETFD), FD_CLOEXEC);
    }
    client.Write("ping", 4);
    char ping[4];
    EXPECT_EQ(accepted.ReadExact(ping, sizeof ping), SocketWrapper::kSuccess);
}

TEST(TCPServerSocket, APortCanBeTakenAgainAtOnce) {
    uint16_t port = 0;
    {
        TCPServerSocket server(0, true);
        port = PortOf(server);
        SocketWrapper client;
        Connect(client, port);
        sockaddr_in peer{};
        const SocketWrapper accepted(server.Accept(peer));
        shutdown(accepted.descriptor(), SHUT_RDWR);  // the side that closes first occupies the port
        char byte = 0;
        EXPECT_EQ(client.ReadExact(&byte, 1), SocketWrapper::kError);
    }
    const TCPServerSocket again(port, true);
    EXPECT_EQ(again.address().sin_port, htons(port));
}
