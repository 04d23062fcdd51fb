#include "tools/checkconf/masterAgentAccess.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <vector>

#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/common/utils/wholeNumber.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibDefinition.h"
#include "tools/checkconf/judgement.h"

namespace checkconf {

namespace {

using Directive = MasterAgentFile::Directive;
using Oid = std::vector<oid>;

constexpr int kAddressBits = 32;

Oid SelfTestOid() {
    const column_definition& column = column_definitions[COLID_selfTestVersion];
    Oid value(column.oid_ptr, column.oid_ptr + column.oid_len);
    value.push_back(0);  // the instance of a scalar
    return value;
}

/** Nothing for one with names: which numbers they stand for is said by MIB files of that machine. */
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

/** Part of the tree, as a line names it. */
struct Subtree {
    Oid root;
    std::vector<uint8_t> mask;  ///< a bit an arc, the highest first: 0 lets any arc pass; 1 behind its end

    bool Holds(const Oid& value) const {
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

/** Hexadecimal octets with points or colons between them. Nothing for longer ones, of which snmpd drops
 * digits. */
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

/** Of a line `view NAME TYPE OID [MASK]`. */
std::optional<Subtree> ReadSubtree(const Directive& words) {
    const std::optional<Oid> root = ReadOid(words[3]);
    const auto mask = words.size() > 4 ? ReadMask(words[4]) : std::vector<uint8_t>();
    return root && mask ? std::optional(Subtree{*root, *mask}) : std::nullopt;
}

/** By which snmpd chooses among the subtrees that hold a value: the last in this order decides. */
bool IsBefore(const Oid& left, const Oid& right) {
    return left.size() != right.size() ? left.size() < right.size() : left < right;
}

Judgement ViewHolds(const MasterAgentFile& file, const std::string& name, const Oid& value) {
    std::optional<Oid> nearest;
    Judgement judgement = Judgement::kNo;
    for (const Directive& words : file.Find({"view"})) {
        // snmpd passes over any other type.
        if (words.size() < 4 || words[1] != name || (words[2] != "included" && words[2] != "excluded"))
            continue;
        const std::optional<Subtree> subtree = ReadSubtree(words);
        if (!subtree)
            return Judgement::kNotLookedAt;
        // Of lines with the same subtree the first counts.
        if (!subtree->Holds(value) || (nearest && !IsBefore(*nearest, subtree->root)))
            continue;
        nearest = subtree->root;
        judgement = words[2] == "included" ? Judgement::kYes : Judgement::kNo;
    }
    return judgement;
}

/** By what stands behind COMMUNITY SOURCE: nothing, or an OID or `-V NAME`, and then a context. */
Judgement LineShows(const MasterAgentFile& file, const Directive& words, const Oid& value) {
    if (words.size() <= 3)
        return Judgement::kYes;
    const bool has_view = words[3] == "-V";
    const size_t context = has_view ? 5 : 4;
    // The self-test names no context, and a line that names one is for that one alone.
    if (words.size() > context && words[context] != "*")
        return Judgement::kNo;
    if (has_view)
        return words.size() > 4 ? ViewHolds(file, words[4], value) : Judgement::kNo;
    const std::optional<Oid> root = ReadOid(words[3]);
    if (!root)
        return Judgement::kNotLookedAt;
    return Subtree{*root, {}}.Holds(value) ? Judgement::kYes : Judgement::kNo;
}

/** Of digits as in 8, or an address; nothing for anything else. */
std::optional<uint32_t> ReadNetMask(const std::string& text) {
    if (const std::optional<int> bits = ParseWhole<int>(text)) {
        if (*bits < 0 || *bits > kAddressBits)
            return std::nullopt;
        return *bits == 0 ? 0 : ~uint32_t{0} << (kAddressBits - *bits);
    }
    in_addr mask;
    return inet_pton(AF_INET, text.c_str(), &mask) == 1 ? std::optional(ntohl(mask.s_addr)) : std::nullopt;
}

/** Whether requests from 127.0.0.1 come under a source. Host names and denials are not looked at. */
Judgement SourceIsThisMachine(const std::string& source) {
    if (source == "default" || CompareNoCase(source, "localhost") == 0)
        return Judgement::kYes;
    const size_t slash = source.find('/');
    in_addr network;
    const std::optional<uint32_t> mask =
        slash == std::string::npos ? ~uint32_t{0} : ReadNetMask(source.substr(slash + 1));
    if (inet_pton(AF_INET, source.substr(0, slash).c_str(), &network) != 1 || !mask)
        return Judgement::kNotLookedAt;
    return (INADDR_LOOPBACK & *mask) == ntohl(network.s_addr) ? Judgement::kYes : Judgement::kNo;
}

/** A line that says which requests a community stands for. */
struct CommunityLine {
    std::string community;
    std::string source;
    bool has_view;  ///< the line itself says what may be read; otherwise other lines do
};

CommunityLine ReadCommunityLine(const Directive& words) {
    const auto word = [&](size_t place) { return place < words.size() ? words[place] : std::string(); };
    if (words[0] == "com2sec")
        return {words.back(), word(words.size() - 2), false};
    const size_t first = words[0] == "authcommunity" ? 2 : 1;
    return {word(first), words.size() > first + 1 ? words[first + 1] : "default", first == 1};
}

}  // namespace

Access JudgeAccess(const MasterAgentFile& file, const std::string& community) {
    bool is_named = false;
    for (const Directive& words : file.Find({"rocommunity", "rwcommunity", "authcommunity", "com2sec"})) {
        const CommunityLine line = ReadCommunityLine(words);
        if (line.community != community)
            continue;
        is_named = true;
        const Judgement source = SourceIsThisMachine(line.source);
        if (source == Judgement::kNo)
            continue;
        if (source == Judgement::kNotLookedAt || !line.has_view)
            return Access::kNotLookedAt;
        const Judgement shows = LineShows(file, words, SelfTestOid());
        if (shows == Judgement::kNotLookedAt)
            return Access::kNotLookedAt;
        return shows == Judgement::kYes ? Access::kAnswered : Access::kHidden;
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
