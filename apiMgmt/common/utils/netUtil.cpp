#include "apiMgmt/common/utils/netUtil.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include "apiMgmt/common/utils/stringUtil.h"

namespace {

constexpr int kMaximumPrefix = 128;

int ParsePrefixLength(const std::string& text) {
    const int length = text.empty() ? kMaximumPrefix : ParseInt(text);
    return length > kMaximumPrefix ? -1 : length;
}

bool IsIPv6Address(const std::string& text) {
    in6_addr parsed;
    const bool holds_zero = text.find('\0') != std::string::npos;  // inet_pton would ignore the rest
    return !holds_zero && inet_pton(AF_INET6, text.c_str(), &parsed) == 1;
}

}  // namespace

bool ParseIPv6Address(const std::string& text, std::string& address, int& prefix_length) {
    const std::string whole = text;  // text and address may be the same object
    prefix_length = kMaximumPrefix;
    address.clear();
    const size_t slash = whole.rfind('/');
    if (slash != std::string::npos) {
        prefix_length = ParsePrefixLength(whole.substr(slash + 1));
    }
    const std::string candidate = whole.substr(0, slash);
    if (!IsIPv6Address(candidate)) {
        return false;
    }
    address = candidate;
    return true;
}
