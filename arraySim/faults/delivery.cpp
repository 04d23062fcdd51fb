#include "arraySim/faults/delivery.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <string>
#include <string_view>

namespace arraysim {

namespace {

constexpr size_t kHeaderSize = 4;
constexpr size_t kMissingBytes = 1000;
constexpr size_t kGarbageBytes = 64;
constexpr int kNoLimit = -1;

/** Returns whether the peer closes, or the connection is shut down, within that time. */
bool ClosesWithin(int descriptor, int limit_ms) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(std::max(limit_ms, 0));
    for (;;) {
        int wait_ms = kNoLimit;
        if (limit_ms != kNoLimit) {
            const auto left =
                std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
            wait_ms = static_cast<int>(std::max<int64_t>(left.count(), 0));
        }
        pollfd wait{descriptor, POLLRDHUP, 0};
        const int count = poll(&wait, 1, wait_ms);
        if (count > 0 || (count < 0 && errno != EINTR)) {
            return true;
        }
        if (count == 0) {
            return false;
        }
    }
}

std::string Frame(size_t length, std::string_view body) {
    std::string frame;
    for (size_t shift = 8 * kHeaderSize; shift > 0; shift -= 8) {
        frame += static_cast<char>(length >> (shift - 8) & 0xff);
    }
    return frame.append(body);
}

/** Returns the frame of a response as altered by faults; it may be incomplete. */
std::string AlteredFrame(const WireLinkEndpoint& endpoint, const protoIPCMsg::GPBIPCMsg& response,
                         const Delivery& delivery) {
    const std::string body =
        delivery.garbage ? std::string(kGarbageBytes, '\xff') : response.SerializeAsString();
    switch (delivery.length) {
        case Delivery::Length::kLong:
            return Frame(body.size() + kMissingBytes, body);
        case Delivery::Length::kHuge:
            return Frame(endpoint.greatest_body() + 1, "");
        case Delivery::Length::kZero:
            return Frame(0, "");
        case Delivery::Length::kCorrect:
            break;
    }
    std::string frame = Frame(body.size(), body);
    if (delivery.tear_after) {
        const size_t wanted = *delivery.tear_after == 0 ? frame.size() / 2 : *delivery.tear_after;
        frame.resize(std::min(wanted, frame.size() - 1));
    }
    return frame;
}

void SendAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = send(descriptor, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (count < 0 && errno != EINTR) {
            throw WireLinkError(std::string("cannot send an altered frame: ") + std::strerror(errno));
        }
        bytes.remove_prefix(count < 0 ? 0 : static_cast<size_t>(count));
    }
}

/** Returns whether the connection ends: all faults of the frame end it, except garbage. */
bool IsTorn(const Delivery& delivery) {
    return delivery.tear_after || delivery.length != Delivery::Length::kCorrect;
}

}  // namespace

Delivered Deliver(WireLinkSocket& connection, const WireLinkEndpoint& endpoint,
                  const protoIPCMsg::GPBIPCMsg& response, const Delivery& delivery) {
    if (delivery.hang) {
        ClosesWithin(connection.descriptor(), kNoLimit);
        return {};
    }
    if (delivery.delay_ms > 0 && ClosesWithin(connection.descriptor(), static_cast<int>(delivery.delay_ms))) {
        return {};
    }
    if (!IsTorn(delivery) && !delivery.garbage) {
        connection.SendGPBMsg(response);
        return {kHeaderSize + response.ByteSizeLong(), true};
    }
    const std::string frame = AlteredFrame(endpoint, response, delivery);
    SendAll(connection.descriptor(), frame);
    return {frame.size(), !IsTorn(delivery)};
}

}  // namespace arraysim
