// Sends bytes as a peer of one of the two sockets: complete frames, truncated frames and frames with a wrong
// length. Each message that is received is handled as the management listener does, and as a response of the
// API manager.

#include <sys/socket.h>
#include <unistd.h>

#include <string>

#include "apiMgmt/common/wirelink/wireLink.h"
#include "apiMgmt/proto/apiMgrMsg.pb.h"
#include "apiMgmt/proto/mgmtCommands.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/mgmtMsgListener.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapQueue.h"
#include "fuzz/lib/fuzzCheck.h"
#include "fuzz/lib/fuzzInput.h"

namespace {

constexpr unsigned long kSizeBytes = 256;  // the maximum body is 4096
constexpr size_t kMaximumInput = 65536;    // fits the socket's buffer

// Returns the body of the frame at a position, or an empty view if the frame is incomplete.
std::string_view BodyAt(std::string_view bytes, size_t place) {
    if (bytes.size() - place < 4)
        return {};
    FuzzInput input(reinterpret_cast<const uint8_t*>(bytes.data()) + place, bytes.size() - place);
    size_t length = 0;
    for (int i = 0; i < 4; ++i)
        length = length * 256 + input.Byte();
    const std::string_view body = input.Text(length);
    return body.size() == length ? body : std::string_view();
}

bool IsTrapCommand(const protoIPCMsg::GPBIPCMsg& message) {
    return message.msgtype() == protoIPCMsg::MGMT && message.has_mgmtmsg() &&
           message.mgmtmsg().cmdtype() == MGMTCommand_SPECIFIC &&
           message.mgmtmsg().cmdspecific() == MGMT_SPECIFIC_SEND_TRAP;
}

void Handle(const protoIPCMsg::GPBIPCMsg& message, std::string_view body) {
    protoIPCMsg::GPBIPCMsg expected;
    FuzzCheck(expected.ParseFromArray(body.data(), static_cast<int>(body.size())),
              "an unparsable body was accepted");
    FuzzCheck(message.SerializeAsString() == expected.SerializeAsString(), "the message differs");
    const size_t waiting = trapsToSend.size();
    HandleMgmtMsg(message);
    FuzzCheck(trapsToSend.size() == waiting || (trapsToSend.size() == waiting + 1 && IsTrapCommand(message)),
              "the queue differs from the received commands");
}

void ReadAll(WireLinkServerConnection& connection, std::string_view bytes) {
    protoIPCMsg::GPBIPCMsg message;
    size_t place = 0;
    try {
        while (const size_t taken = connection.RecvGPBMsg(message)) {
            const std::string_view body = BodyAt(bytes, place);
            FuzzCheck(taken == 4 + body.size() && body.size() <= 16 * kSizeBytes, "wrong frame size");
            Handle(message, body);
            place += taken;
        }
        FuzzCheck(place == bytes.size(), "end of stream before the last frame");
    } catch (const WireLinkError&) {
        FuzzCheck(place < bytes.size(), "an error after the last frame");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const WireLinkEndpoint endpoint = WireLinkEndpoint::CreateLocalEndpoint("/fuzz", 10, kSizeBytes);
    const std::string_view bytes(reinterpret_cast<const char*>(data), std::min(size, kMaximumInput));
    int pair[2];
    FuzzCheck(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, pair) == 0, "no socket pair");
    FuzzCheck(send(pair[0], bytes.data(), bytes.size(), MSG_DONTWAIT | MSG_NOSIGNAL) ==
                      static_cast<ssize_t>(bytes.size()) ||
                  bytes.empty(),
              "the socket's buffer is too small");
    close(pair[0]);
    WireLinkServerConnection connection(endpoint, pair[1]);
    ReadAll(connection, bytes);
    trapsToSend.clear();
    return 0;
}
