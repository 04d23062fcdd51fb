#include "apiMgmt/common/socketUtils/socketWrapper.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>
#include <optional>
#include <thread>

namespace {

using namespace std::string_literals;

// A wrapper and the raw other end of its connection.
class Connection {
  public:
    Connection() {
        int ends[2];
        if (socketpair(AF_UNIX, SOCK_STREAM, 0, ends) != 0) {
            abort();
        }
        socket_.emplace(ends[0]);
        peer_ = ends[1];
    }
    ~Connection() { ClosePeer(); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    SocketWrapper& socket() { return *socket_; }
    void Say(const std::string& bytes) const {
        ASSERT_EQ(write(peer_, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    }
    std::string Hear() const {
        char buffer[100];
        const ssize_t count = read(peer_, buffer, sizeof buffer);
        return {buffer, count > 0 ? static_cast<size_t>(count) : 0};
    }
    void ClosePeer() {
        if (peer_ != -1) {
            close(peer_);
        }
        peer_ = -1;
    }

  private:
    std::optional<SocketWrapper> socket_;
    int peer_ = -1;
};

}  // namespace

TEST(SocketWrapper, ReadTakesWhatIsThereAndReadExactWaitsForAll) {
    Connection connection;
    connection.Say("abcdef");
    char buffer[10] = {};
    size_t received = 99;
    EXPECT_EQ(connection.socket().Read(buffer, 4, received), SocketWrapper::kSuccess);
    EXPECT_EQ(std::string(buffer, received), "abcd");
    EXPECT_EQ(connection.socket().Read(buffer, 4, received), SocketWrapper::kSuccess);
    EXPECT_EQ(std::string(buffer, received), "ef");

    std::thread peer([&] {
        connection.Say("12");
        connection.Say("345");
        connection.Say("6789");
    });
    EXPECT_EQ(connection.socket().ReadExact(buffer, 9), SocketWrapper::kSuccess);
    EXPECT_STREQ(buffer, "123456789");
    peer.join();
}

TEST(SocketWrapper, ThePeersEndIsAnErrorAlsoHalfWay) {
    Connection connection;
    connection.Say("abc");
    connection.ClosePeer();
    char buffer[10] = {};
    size_t received = 99;
    EXPECT_EQ(connection.socket().ReadExact(buffer, 4), SocketWrapper::kError);
    EXPECT_EQ(connection.socket().Read(buffer, 4, received), SocketWrapper::kError);
    EXPECT_EQ(received, 0U);
}

TEST(SocketWrapper, WritingToAPeerThatHasGoneRaisesNoSignal) {
    Connection connection;
    connection.ClosePeer();
    EXPECT_EQ(connection.socket().Write("abc", 3), SocketWrapper::kSuccess);
    EXPECT_EQ(connection.socket().Write("abc", 3), SocketWrapper::kSuccess);
}

TEST(SocketWrapper, AMessageHasABigEndianHeaderAndMayHaveNoBody) {
    Connection connection;
    EXPECT_EQ(connection.socket().SendMessage("body", 4, 0x0102), SocketWrapper::kSuccess);
    EXPECT_EQ(connection.Hear(), "\1\2\0\0\0\0\0\4body"s);
    connection.Say("\1\2\0\0\0\0\0\0"s);
    auto body = std::make_unique<char[]>(1);
    uint32_t size = 99;
    EXPECT_EQ(connection.socket().ReceiveMessage(body, size), SocketWrapper::kSuccess);
    EXPECT_EQ(body, nullptr);
    EXPECT_EQ(size, 0U);
}

TEST(SocketWrapper, ReceivesMessagesAndRefusesTornOnes) {
    const std::tuple<std::string, int, std::string> cases[] = {
        {"\1\2\xff\xff\0\0\0\4body"s, SocketWrapper::kSuccess, "body"},
        {"\1\2\0\0\0\0\1\0"s + std::string(256, 'x'), SocketWrapper::kSuccess, std::string(256, 'x')},
        {"\1\2\0\0\0\0\0"s, SocketWrapper::kError, ""},
        {"\1\2\0\0\0\0\0\4bod"s, SocketWrapper::kError, ""},
        {"\1\2\0\0\xff\xff\xff\xff"s + "much less", SocketWrapper::kError, ""},
    };
    for (const auto& [frames, result, each_body] : cases) {
        Connection connection;
        connection.Say(frames);
        connection.ClosePeer();
        auto body = std::make_unique<char[]>(1);
        uint32_t size = 99;
        EXPECT_EQ(connection.socket().ReceiveMessage(body, size), result);
        EXPECT_EQ(size, each_body.size());
        ASSERT_EQ(body != nullptr, result == SocketWrapper::kSuccess);
        if (body != nullptr) {
            EXPECT_EQ(std::string(body.get(), size), each_body);
            EXPECT_EQ(body[size], '\0');
        }
    }
}
