#include "apiMgmt/common/socketUtils/tcpServerSocket.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

namespace {

bool listen_fails = false;

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

int FirstFreeDescriptor() {
    const int descriptor = open("/dev/null", O_RDONLY);
    close(descriptor);
    return descriptor;
}

void ExpectFailure(int port, unsigned line, const std::string& message) {
    const int free_before = FirstFreeDescriptor();
    try {
        const TCPServerSocket server(port, true);
        ADD_FAILURE() << message;
    } catch (const APISocketError& error) {
        EXPECT_EQ(FirstFreeDescriptor(), free_before);
        EXPECT_EQ(error.what(), message);
        EXPECT_EQ(error.ToText(), message);
        EXPECT_EQ(error.GetSourceFile(), "apiMgmt/common/socketUtils/tcpServerSocket");
        EXPECT_EQ(error.GetSourceLine(), line);
    }
}

}  // namespace

extern "C" int listen(int descriptor, int backlog) {
    if (listen_fails) {
        errno = EADDRINUSE;
        return -1;
    }
    return static_cast<int>(syscall(SYS_listen, descriptor, backlog));
}

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

TEST(TCPServerSocket, AcceptWithoutAPeerClearsTheAddress) {
    TCPServerSocket server(0, false);
    EXPECT_EQ(server.GetAddressText(), "0.0.0.0");
    ASSERT_GE(server.SetNonBlocking(true), 0);
    sockaddr_in peer{};
    peer.sin_port = 5;
    EXPECT_EQ(server.Accept(peer), -1);
    EXPECT_EQ(peer.sin_port, 0);
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
        shutdown(accepted.descriptor(), SHUT_RDWR);  // the side that closes first keeps the port for a while
        char byte = 0;
        EXPECT_EQ(client.ReadExact(&byte, 1), SocketWrapper::kError);
    }
    const TCPServerSocket again(port, true);
    EXPECT_EQ(again.address().sin_port, htons(port));
}

TEST(TCPServerSocket, EachFailedStepHasItsErrorAndLeavesNoDescriptor) {
    const TCPServerSocket other(0, true);
    const std::string port = std::to_string(PortOf(other));
    ExpectFailure(PortOf(other), 26, "Bind failed at port [" + port + "]");
    ExpectFailure(65536 + PortOf(other), 26,
                  "Bind failed at port [" + std::to_string(65536 + PortOf(other)) + "]");
    ExpectFailure(-1, 26, "Bind failed at port [-1]");
    listen_fails = true;
    ExpectFailure(0, 36, "Listen called failed at port [0]");

    rlimit usual{};
    getrlimit(RLIMIT_NOFILE, &usual);
    const rlimit none{3, usual.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    ExpectFailure(0, 16, "Socket creation failed at port [0]");
    setrlimit(RLIMIT_NOFILE, &usual);  // sanitizers need descriptors, too
}
