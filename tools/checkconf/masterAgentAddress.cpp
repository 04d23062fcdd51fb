#include "tools/checkconf/masterAgentAddress.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string_view>

#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/common/utils/wholeNumber.h"

namespace checkconf {

namespace {

constexpr uint64_t kPort = 161;

// What else snmpd can listen at. A word that is none of them, nor udp, is the name of a host.
constexpr std::string_view kOtherTransports[] = {"udp6",   "udpv6",   "udpipv6", "tcp",     "tcp6",
                                                 "tcpv6",  "tcpipv6", "unix",    "dtlsudp", "dtls",
                                                 "tlstcp", "ssh",     "ipx",     "aal5pvc", "pvc"};

Judgement Judge(bool truth) {
    return truth ? Judgement::kYes : Judgement::kNo;
}

Judgement HostIsThisMachine(const std::string& host) {
    if (host.empty() || CompareNoCase(host, "localhost") == 0)
        return Judgement::kYes;
    in_addr address;
    if (inet_aton(host.c_str(), &address) == 0)
        return Judgement::kNotLookedAt;
    return Judge(address.s_addr == htonl(INADDR_ANY) || address.s_addr == htonl(INADDR_LOOPBACK));
}

/** HOST, PORT, HOST:PORT or nothing at all. */
Judgement UdpServesThisMachine(const std::string& place) {
    if (const std::optional<uint64_t> port = ParseWhole<uint64_t>(place))
        return Judge(*port == kPort);
    if (std::ranges::count(place, ':') > 1)
        return Judgement::kNo;  // of IPv6, and IPv4 does not come along
    const size_t colon = place.find(':');
    if (colon != std::string::npos) {
        const std::optional<uint64_t> port = ParseWhole<uint64_t>(place.substr(colon + 1));
        if (!port)
            return Judgement::kNotLookedAt;
        if (*port != kPort)
            return Judgement::kNo;
    }
    return HostIsThisMachine(place.substr(0, colon));
}

}  // namespace

Judgement ServesThisMachine(const std::string& address) {
    if (address.starts_with('/'))
        return Judgement::kNo;  // a socket of the file system
    const size_t colon = address.find(':');
    if (colon == std::string::npos)
        return UdpServesThisMachine(address);
    const std::string transport = ToLower(address.substr(0, colon));
    if (std::ranges::find(kOtherTransports, transport) != std::end(kOtherTransports))
        return Judgement::kNo;
    return UdpServesThisMachine(transport == "udp" ? address.substr(colon + 1) : address);
}

}  // namespace checkconf
