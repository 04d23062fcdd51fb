#include <google/protobuf/message.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "apiMgmt/common/wirelink/fieldCount.h"
#include "apiMgmt/common/wirelink/frameBody.h"
#include "apiMgmt/common/wirelink/localSocket.h"
#include "apiMgmt/common/wirelink/wireLink.h"

namespace {

constexpr size_t kHeaderSize = 4;
constexpr int kGreatestFieldCount = 65'536;
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

/** One frame on its way in: all its bytes share one time limit. */
class FrameReader {
  public:
    FrameReader(const WireLinkEndpoint& endpoint, int descriptor, const WireLinkWait& wait)
        : endpoint_(endpoint), descriptor_(descriptor), wait_(wait), deadline_(endpoint.timeout_s()) {}

    /** False when the peer has closed before the first byte. */
    bool ReadHeader(FrameHeader& header) {
        size_t count = 0;
        while (count < kHeaderSize) {
            const size_t step = ReadSome({header.data() + count, kHeaderSize - count});
            if (step == 0 && count == 0)
                return false;
            if (step == 0)
                ThrowWireLinkError(endpoint_, "the peer closed inside the length of a frame");
            count += step;
        }
        return true;
    }

    void ReadBody(FrameBody& body) {
        while (body.missing() > 0) {
            const size_t step = ReadSome(body.Room());
            if (step == 0)
                ThrowWireLinkError(endpoint_, "the peer closed inside a frame, " +
                                                  std::to_string(body.missing()) +
                                                  " bytes of its body are missing");
            body.Filled(step);
        }
    }

  private:
    /** At least one byte, or 0 when the peer has closed. */
    size_t ReadSome(std::span<char> room) {
        for (;;) {
            const ssize_t count = recv(descriptor_, room.data(), room.size(), MSG_DONTWAIT);
            if (count >= 0)
                return static_cast<size_t>(count);
            if (errno == ECONNRESET)  // closed without having read all that we sent
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
        ThrowWireLinkError(endpoint, "a body of " + std::to_string(length) +
                                         " bytes is too long, the greatest is " +
                                         std::to_string(endpoint.greatest_body()));
}

/** The partial forms keep protobuf from writing to standard error; what is missing is our error's text. */
void Parse(const WireLinkEndpoint& endpoint, FrameBody& body, size_t length,
           google::protobuf::Message& message) {
    const FieldCount fields = CountFields(body, *message.GetDescriptor(), kGreatestFieldCount);
    if (fields == FieldCount::many)
        ThrowWireLinkError(endpoint,
                           "the body has more than " + std::to_string(kGreatestFieldCount) + " fields");
    body.Rewind();
    if (fields == FieldCount::malformed ||
        !message.ParsePartialFromBoundedZeroCopyStream(&body, static_cast<int>(length)))
        ThrowWireLinkError(endpoint, "the body does not parse");
    if (!message.IsInitialized())
        ThrowWireLinkError(endpoint,
                           "the body does not parse, it lacks " + message.InitializationErrorString());
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
    CheckLength(endpoint_, length);  // before anything is allocated for the body
    FrameBody body(length, endpoint_.size_bytes());
    reader.ReadBody(body);
    Parse(endpoint_, body, length, message);
    return kHeaderSize + length;
}

void WireLinkSocket::SendGPBMsg(const google::protobuf::Message& message) {
    if (!message.IsInitialized())
        ThrowWireLinkError(endpoint_,
                           "the message cannot be sent, it lacks " + message.InitializationErrorString());
    const size_t length = message.ByteSizeLong();
    CheckLength(endpoint_, length);
    const FrameHeader header = HeaderOf(length);
    std::string frame(header.data(), kHeaderSize);
    if (!message.AppendPartialToString(&frame))
        ThrowWireLinkError(endpoint_, "the message cannot be serialised");
    SendAll(endpoint_, descriptor_, wait_, frame);
}
