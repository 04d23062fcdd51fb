#include "tests/unit/core/fakes/fakeMgmtSender.h"

#include <unistd.h>

#include "apiMgmt/common/wirelink/wireLink.h"
#include "tests/unit/core/fakes/transcript.h"

namespace fake_mgmt_sender {

std::vector<connection> connections;
std::string set_up_failure;

namespace {

// Position of the next message. The descriptor of a connection is its number. Listener thread only.
size_t next_message = 0;
int next_connection = 0;

}  // namespace

}  // namespace fake_mgmt_sender

using namespace fake_mgmt_sender;

WireLinkServer::WireLinkServer(const WireLinkEndpoint& endpoint) : endpoint_(endpoint), descriptor_(-1) {
    if (!set_up_failure.empty())
        throw WireLinkError(set_up_failure);
}

WireLinkServer::~WireLinkServer() = default;

int WireLinkServer::Accept(sockaddr* /*address*/, unsigned* /*length*/, int /*flags*/) {
    while (next_connection >= static_cast<int>(connections.size())) {
        if (!connections.empty())
            transcript::add("no more senders");
        for (;;)
            pause();
    }
    next_message = 0;
    return next_connection++;
}

WireLinkServerConnection::WireLinkServerConnection(const WireLinkEndpoint& endpoint, int descriptor)
    : WireLinkSocket(endpoint, descriptor, PollDescriptor) {}

size_t WireLinkSocket::RecvGPBMsg(google::protobuf::Message& message) {
    const connection& sender = connections.at(static_cast<size_t>(descriptor_));
    if (next_message < sender.messages.size()) {
        message.CopyFrom(sender.messages[next_message++]);
        return 1;
    }
    if (sender.failure)
        throw WireLinkError(*sender.failure);
    return 0;
}
