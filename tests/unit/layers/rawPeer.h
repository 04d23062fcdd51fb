#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>

#include "apiMgmt/common/wirelink/wireLink.h"
#include "apiMgmt/proto/apiMgrMsg.pb.h"
#include "tests/unit/errorOf.h"

/** The other end of a connection, which sends and receives plain bytes. */
class RawPeer {
  public:
    explicit RawPeer(int descriptor) : descriptor_(descriptor) {}
    ~RawPeer() { Close(); }
    RawPeer(const RawPeer&) = delete;
    RawPeer& operator=(const RawPeer&) = delete;

    /** Returns false if the other end is closed. */
    bool Write(const std::string& bytes) {
        return send(descriptor_, bytes.data(), bytes.size(), MSG_NOSIGNAL) ==
               static_cast<ssize_t>(bytes.size());
    }

    std::string Read(size_t count) {
        std::string bytes(count, '\0');
        bytes.resize(
            static_cast<size_t>(std::max<ssize_t>(recv(descriptor_, bytes.data(), count, MSG_WAITALL), 0)));
        return bytes;
    }

    void Close() {
        if (descriptor_ >= 0)
            close(descriptor_);
        descriptor_ = -1;
    }

    int descriptor() const { return descriptor_; }

  private:
    int descriptor_;
};

/** A connection of the channel with a raw peer at its other end. */
class Conversation {
  public:
    explicit Conversation(long timeout_s = 900, unsigned long size_bytes = 4096)
        : Conversation(WireLinkEndpoint::CreateLocalEndpoint("/here", timeout_s, size_bytes), Pair()) {}

    /** Returns the message of the exception that RecvGPBMsg throws, or an empty string. */
    std::string ReceiveError() {
        return ErrorOf([this] { connection.RecvGPBMsg(message); });
    }

    RawPeer peer;
    WireLinkServerConnection connection;
    protoIPCMsg::GPBIPCMsg message;

  private:
    Conversation(const WireLinkEndpoint& endpoint, std::array<int, 2> pair)
        : peer(pair[0]), connection(endpoint, pair[1]) {}

    static std::array<int, 2> Pair() {
        std::array<int, 2> pair;
        if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, pair.data()) != 0)
            throw std::runtime_error("no socketpair");
        return pair;
    }
};

/** Returns a frame with any body. */
inline std::string Frame(const std::string& body) {
    std::string frame;
    for (int shift = 24; shift >= 0; shift -= 8)
        frame += static_cast<char>(body.size() >> shift & 0xff);
    return frame + body;
}

/** Returns a valid message with this body size, which must be some thousands of bytes. */
inline protoIPCMsg::GPBIPCMsg MessageOfSize(size_t size) {
    protoIPCMsg::GPBIPCMsg message;
    message.set_msgtype(protoIPCMsg::MGMT);
    auto& mgmt = *message.mutable_mgmtmsg();
    mgmt.set_serviceid(1);
    mgmt.set_msgtype(1);
    mgmt.set_cmdtype(0);
    mgmt.set_addlarg(std::string(size, 'x'));
    mgmt.mutable_addlarg()->resize(2 * size - message.ByteSizeLong());
    EXPECT_EQ(message.ByteSizeLong(), size);
    return message;
}
