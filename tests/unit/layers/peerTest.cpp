#include <gmock/gmock.h>
#include <pthread.h>
#include <sys/un.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <thread>

#include "tests/unit/layers/rawPeer.h"
#include "tests/unit/layers/temporaryFolder.h"

namespace {

using testing::HasSubstr;

TEST(Peer, MaySendSingleBytesWithSignalsInBetween) {
    struct sigaction ignore {};
    ignore.sa_handler = [](int) {};  // without SA_RESTART, so that system calls are interrupted
    sigaction(SIGUSR1, &ignore, nullptr);

    Conversation c;
    const std::string frame = Frame(MessageOfSize(1000).SerializeAsString());
    const pthread_t reader = pthread_self();
    std::thread writer([&] {
        for (char byte : frame) {
            pthread_kill(reader, SIGUSR1);
            c.peer.Write(std::string(1, byte));
        }
    });
    EXPECT_EQ(c.connection.RecvGPBMsg(c.message), frame.size());
    writer.join();
}

/** Each byte arrives in time, but not the whole frame. */
TEST(Peer, CannotExtendTheTimeoutWithSingleBytes) {
    Conversation c(1);
    std::atomic<bool> done = false;
    std::thread writer([&] {
        const std::string frame = Frame(std::string(60'000, 'x'));
        for (size_t i = 0; i < frame.size() && !done; ++i) {
            c.peer.Write(frame.substr(i, 1));
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
    });
    EXPECT_EQ(c.ReceiveError(), "/here: timeout of 1 s expired while receiving a frame");
    done = true;
    writer.join();
}

TEST(Peer, ThatSendsOrReadsNothingCausesATimeout) {
    Conversation c(0, 1'000'000);
    EXPECT_EQ(c.ReceiveError(), "/here: timeout of 0 s expired while receiving a frame");
    ASSERT_TRUE(c.peer.Write("\1"));
    EXPECT_EQ(c.ReceiveError(), "/here: timeout of 0 s expired while receiving a frame");
    const auto large = MessageOfSize(8'000'000);  // more than fits in the socket
    EXPECT_EQ(ErrorOf([&] { c.connection.SendGPBMsg(large); }),
              "/here: timeout of 0 s expired while sending a frame");
}

TEST(Peer, ThatHasClosedCausesAnErrorAndNoSignal) {
    signal(SIGPIPE, SIG_DFL);
    Conversation c;
    c.peer.Close();
    EXPECT_EQ(ErrorOf([&] { c.connection.SendGPBMsg(MessageOfSize(1000)); }),
              "/here: the peer closed while a frame was sent");

    // Between two frames, closing without reading the sent data is not an error.
    Conversation unread;
    unread.connection.SendGPBMsg(MessageOfSize(1000));
    unread.peer.Close();
    EXPECT_EQ(unread.connection.RecvGPBMsg(unread.message), 0u);
}

class Client : public testing::Test {
  protected:
    WireLinkEndpoint Endpoint(long timeout_s = 900) const {
        return WireLinkEndpoint::CreateLocalEndpoint(path_, timeout_s, 4096);
    }

    /** Binds the path without listening. */
    int Bind() const {
        const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path_.copy(address.sun_path, sizeof address.sun_path - 1);
        EXPECT_EQ(bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
        return listener;
    }

    TemporaryFolder folder_;
    const std::string path_ = folder_.Path("socket");
};

TEST_F(Client, CannotConnectWhereNobodyListens) {
    const auto connect = [this] { WireLinkClient client(Endpoint()); };
    EXPECT_EQ(ErrorOf(connect), path_ + ": cannot connect: No such file or directory");
    const RawPeer listener(Bind());
    EXPECT_EQ(ErrorOf(connect), path_ + ": cannot connect: Connection refused");
}

TEST_F(Client, GetsAResponseOrAnError) {
    WireLinkServer server(Endpoint());
    const std::string frame = Frame(MessageOfSize(1000).SerializeAsString());
    const std::pair<std::string, std::string> cases[] = {
        {frame, ""},
        {"", path_ + ": the peer closed without a response"},
        {frame.substr(0, 500), path_ + ": the peer closed within a frame; 504 bytes of its body are missing"},
    };
    for (const auto& [bytes, error] : cases) {
        std::thread peer([&server, &bytes = bytes] {
            RawPeer accepted(server.Accept(nullptr, nullptr, 0));
            accepted.Read(4 + 2000);
            accepted.Write(bytes);
        });
        protoIPCMsg::GPBIPCMsg response;
        EXPECT_EQ(
            ErrorOf([&] { WireLinkClient(Endpoint()).SendReceiveMessage(MessageOfSize(2000), response); }),
            error);
        EXPECT_EQ(response.IsInitialized(), error.empty());
        peer.join();
    }
}

}  // namespace
