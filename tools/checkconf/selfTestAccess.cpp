#include "tools/checkconf/selfTestAccess.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/common/utils/wholeNumber.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibDefinition.h"

namespace checkconf {

namespace {

using Directive = MasterAgentFile::Directive;
using Oid = std::vector<oid>;

constexpr uint64_t kPort = 161;

// Other transports that snmpd supports. Any other word, except udp, is a host name.
constexpr std::string_view kOtherTransports[] = {"udp6",   "udpv6",   "udpipv6", "tcp",     "tcp6",
                                                 "tcpv6",  "tcpipv6", "unix",    "dtlsudp", "dtls",
                                                 "tlstcp", "ssh",     "ipx",     "aal5pvc", "pvc"};

Verdict ToVerdict(bool holds) {
    return holds ? Verdict::kYes : Verdict::kNo;
}

Verdict HostIncludesLoopback(const std::string& host) {
    if (host.empty() || CompareNoCase(host, "localhost") == 0)
        return Verdict::kYes;
    in_addr address;
    if (inet_aton(host.c_str(), &address) == 0)
        return Verdict::kUnknown;
    return ToVerdict(address.s_addr == htonl(INADDR_ANY) || address.s_addr == htonl(INADDR_LOOPBACK));
}

/** place: HOST, PORT, HOST:PORT or empty. */
Verdict UdpIncludesSelfTestAddress(const std::string& place) {
    if (const std::optional<uint64_t> port = ParseWhole<uint64_t>(place))
        return ToVerdict(*port == kPort);
    if (std::ranges::count(place, ':') > 1)
        return Verdict::kNo;  // IPv6, which does not include IPv4
    const size_t colon = place.find(':');
    if (colon != std::string::npos) {
        const std::optional<uint64_t> port = ParseWhole<uint64_t>(place.substr(colon + 1));
        if (!port)
            return Verdict::kUnknown;
        if (*port != kPort)
            return Verdict::kNo;
    }
    return HostIncludesLoopback(place.substr(0, colon));
}

constexpr int kAddressBits = 32;

Oid SelfTestOid() {
    const column_definition& column = column_definitions[COLID_selfTestVersion];
    Oid value(column.oid_ptr, column.oid_ptr + column.oid_len);
    value.push_back(0);  // the instance of the scalar
    return value;
}

/** Returns nothing for an OID with names, because their numbers depend on the MIB files of the machine. */
std::optional<Oid> ReadOid(const std::string& text) {
    std::vector<std::string> pieces;
    SplitChar(text.starts_with('.') ? text.substr(1) : text, '.', pieces);
    Oid value;
    for (const std::string& piece : pieces) {
        const std::optional<uint32_t> number = ParseWhole<uint32_t>(piece);
        if (!number)
            return std::nullopt;
        value.push_back(*number);
    }
    return value.empty() ? std::nullopt : std::optional(value);
}

/** Part of the OID tree. */
struct Subtree {
    Oid root;
    std::vector<uint8_t> mask;  ///< one bit per arc, highest first; 0 matches any arc. Missing bits are 1

    bool Contains(const Oid& value) const {
        if (value.size() < root.size())
            return false;
        for (size_t i = 0; i < root.size(); ++i) {
            const bool counts = i / 8 >= mask.size() || (mask[i / 8] >> (7 - i % 8) & 1) != 0;
            if (counts && value[i] != root[i])
                return false;
        }
        return true;
    }
};

/** Parses hexadecimal octets separated by full stops or colons. Returns nothing for longer numbers, which
 * snmpd truncates. */
std::optional<std::vector<uint8_t>> ReadMask(std::string text) {
    std::ranges::replace(text, ':', '.');
    std::vector<std::string> octets;
    SplitChar(text, '.', octets);
    std::vector<uint8_t> mask;
    for (std::string_view octet : octets) {
        if (octet.starts_with("0x"))
            octet.remove_prefix(2);
        const std::optional<uint8_t> bits = ParseWhole<uint8_t>(octet, 16);
        if (!bits)
            return std::nullopt;
        mask.push_back(*bits);
    }
    return mask;
}

/** Parses a line `view NAME TYPE OID [MASK]`. */
std::optional<Subtree> ReadSubtree(const Directive& words) {
    const std::optional<Oid> root = ReadOid(words[3]);
    const auto mask = words.size() > 4 ? ReadMask(words[4]) : std::vector<uint8_t>();
    return root && mask ? std::optional(Subtree{*root, *mask}) : std::nullopt;
}

/** The order in which snmpd compares the subtrees that contain a value: the last one decides. */
bool IsBefore(const Oid& left, const Oid& right) {
    return left.size() != right.size() ? left.size() < right.size() : left < right;
}

Verdict ViewContains(const MasterAgentFile& file, const std::string& name, const Oid& value) {
    std::optional<Oid> nearest;
    Verdict verdict = Verdict::kNo;
    for (const Directive& words : file.Find({"view"})) {
        // snmpd ignores other types.
        if (words.size() < 4 || words[1] != name || (words[2] != "included" && words[2] != "excluded"))
            continue;
        const std::optional<Subtree> subtree = ReadSubtree(words);
        if (!subtree)
            return Verdict::kUnknown;
        // snmpd uses the first of several lines with the same subtree.
        if (!subtree->Contains(value) || (nearest && !IsBefore(*nearest, subtree->root)))
            continue;
        nearest = subtree->root;
        verdict = words[2] == "included" ? Verdict::kYes : Verdict::kNo;
    }
    return verdict;
}

/** Checks what follows COMMUNITY SOURCE: nothing, or an OID or `-V NAME`, and then a context. */
Verdict LineShows(const MasterAgentFile& file, const Directive& words, const Oid& value) {
    if (words.size() <= 3)
        return Verdict::kYes;
    const bool has_view = words[3] == "-V";
    const size_t context = has_view ? 5 : 4;
    // A line with a context applies only to that context, and the self-test uses none.
    if (words.size() > context && words[context] != "*")
        return Verdict::kNo;
    if (has_view)
        return words.size() > 4 ? ViewContains(file, words[4], value) : Verdict::kNo;
    const std::optional<Oid> root = ReadOid(words[3]);
    if (!root)
        return Verdict::kUnknown;
    return Subtree{*root, {}}.Contains(value) ? Verdict::kYes : Verdict::kNo;
}

/** Parses a number of bits or an address. */
std::optional<uint32_t> ReadNetMask(const std::string& text) {
    if (const std::optional<int> bits = ParseWhole<int>(text)) {
        if (*bits < 0 || *bits > kAddressBits)
            return std::nullopt;
        return *bits == 0 ? 0 : ~uint32_t{0} << (kAddressBits - *bits);
    }
    in_addr mask;
    return inet_pton(AF_INET, text.c_str(), &mask) == 1 ? std::optional(ntohl(mask.s_addr)) : std::nullopt;
}

/** Returns whether a source includes 127.0.0.1. Host names and negated sources are not checked. */
Verdict IncludesThisMachine(const std::string& source) {
    if (source == "default" || CompareNoCase(source, "localhost") == 0)
        return Verdict::kYes;
    const size_t slash = source.find('/');
    in_addr network;
    const std::optional<uint32_t> mask =
        slash == std::string::npos ? ~uint32_t{0} : ReadNetMask(source.substr(slash + 1));
    if (inet_pton(AF_INET, source.substr(0, slash).c_str(), &network) != 1 || !mask)
        return Verdict::kUnknown;
    return (INADDR_LOOPBACK & *mask) == ntohl(network.s_addr) ? Verdict::kYes : Verdict::kNo;
}

/** A line that maps requests to a community. */
struct CommunityLine {
    std::string community;
    std::string source;
    bool has_view;  ///< whether the line itself restricts what can be read; otherwise other lines do
};

CommunityLine ReadCommunityLine(const Directive& words) {
    const auto word = [&](size_t place) { return place < words.size() ? words[place] : std::string(); };
    if (words[0] == "com2sec")
        return {words.back(), word(words.size() - 2), false};
    const size_t first = words[0] == "authcommunity" ? 2 : 1;
    return {word(first), words.size() > first + 1 ? words[first + 1] : "default", first == 1};
}

}  // namespace

Verdict IncludesSelfTestAddress(const std::string& address) {
    if (address.starts_with('/'))
        return Verdict::kNo;  // a local socket
    const size_t colon = address.find(':');
    if (colon == std::string::npos)
        return UdpIncludesSelfTestAddress(address);
    const std::string transport = ToLower(address.substr(0, colon));
    if (std::ranges::find(kOtherTransports, transport) != std::end(kOtherTransports))
        return Verdict::kNo;
    return UdpIncludesSelfTestAddress(transport == "udp" ? address.substr(colon + 1) : address);
}

Access FindAccess(const MasterAgentFile& file, const std::string& community) {
    bool is_named = false;
    for (const Directive& words : file.Find({"rocommunity", "rwcommunity", "authcommunity", "com2sec"})) {
        const CommunityLine line = ReadCommunityLine(words);
        if (line.community != community)
            continue;
        is_named = true;
        const Verdict source = IncludesThisMachine(line.source);
        if (source == Verdict::kNo)
            continue;
        if (source == Verdict::kUnknown || !line.has_view)
            return Access::kUnknown;
        const Verdict shows = LineShows(file, words, SelfTestOid());
        if (shows == Verdict::kUnknown)
            return Access::kUnknown;
        return shows == Verdict::kYes ? Access::kGranted : Access::kHidden;
    }
    return is_named ? Access::kElsewhere : Access::kNone;
}

std::string SelfTestOidText() {
    std::string text;
    for (const oid arc : SelfTestOid())
        text += "." + std::to_string(arc);
    return text;
}

}  // namespace checkconf
