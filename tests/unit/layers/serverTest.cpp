#include <gmock/gmock.h>
#include <sys/stat.h>

#include <fstream>
#include <optional>

#include "tests/unit/layers/rawPeer.h"
#include "tests/unit/layers/temporaryFolder.h"

namespace {

class Server : public testing::Test {
  protected:
    static WireLinkEndpoint EndpointAt(const std::string& path) {
        return WireLinkEndpoint::CreateLocalEndpoint(path, 900, 4096);
    }

    static std::string ErrorAt(const std::string& path) {
        return ErrorOf([&] { WireLinkServer server(EndpointAt(path)); });
    }

    /** Sends a message to the path and receives it through the server. */
    void ExpectServes(WireLinkServer& server) {
        WireLinkClient client(EndpointAt(path_));
        WireLinkServerConnection connection(EndpointAt(path_), server.Accept(nullptr, nullptr, 0));
        protoIPCMsg::GPBIPCMsg message;
        client.SendGPBMsg(MessageOfSize(1000));
        EXPECT_EQ(connection.RecvGPBMsg(message), 1004u);
        for (int descriptor : {client.descriptor(), connection.descriptor(), server.descriptor()})
            EXPECT_TRUE(fcntl(descriptor, F_GETFD) & FD_CLOEXEC) << "inherited by child processes";
    }

    bool Exists() const { return access(path_.c_str(), F_OK) == 0; }

    TemporaryFolder folder_;
    const std::string path_ = folder_.Path("socket");
};

TEST_F(Server, MakesAPrivateSocketAndRemovesIt) {
    umask(0);
    {
        WireLinkServer server(EndpointAt(path_));
        struct stat status;
        ASSERT_EQ(stat(path_.c_str(), &status), 0);
        EXPECT_EQ(status.st_mode, mode_t{S_IFSOCK | 0600});
        ExpectServes(server);
    }
    EXPECT_FALSE(Exists());
}

TEST_F(Server, ReplacesAStaleSocketAndRemovesOnlyItsOwn) {
    std::optional<WireLinkServer> old(EndpointAt(path_));
    std::optional<WireLinkServer> server(EndpointAt(path_));
    ExpectServes(*server);
    old.reset();
    EXPECT_TRUE(Exists()) << "removed by the earlier server";
    ExpectServes(*server);
    server.reset();
    EXPECT_FALSE(Exists());
}

TEST_F(Server, LeavesAPathAloneThatIsNotASocket) {
    const std::string file = folder_.Path("file");
    std::ofstream(file) << "data";
    EXPECT_EQ(ErrorAt(file), file + ": exists but is not a socket");
    std::string content;
    std::ifstream(file) >> content;
    EXPECT_EQ(content, "data");

    WireLinkServer server(EndpointAt(path_));
    const std::string link = folder_.Path("link");
    ASSERT_EQ(symlink(path_.c_str(), link.c_str()), 0);
    EXPECT_EQ(ErrorAt(link), link + ": exists but is not a socket");
    EXPECT_EQ(ErrorAt(folder_.Path(".")), folder_.Path(".") + ": exists but is not a socket");
    ExpectServes(server);
}

}  // namespace
