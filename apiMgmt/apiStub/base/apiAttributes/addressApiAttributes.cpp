#include "apiMgmt/apiStub/base/apiAttributes/addressApiAttributes.h"

#include <vector>

#include "apiMgmt/apiStub/base/apiAttributes/filterItem.h"
#include "apiMgmt/common/utils/netUtil.h"
#include "apiMgmt/common/utils/stringUtil.h"

namespace {

constexpr char kNoIPv4Address[] = "0.0.0.0";
constexpr char kNoIPv6Address[] = "::";

bool MatchesAddress(const FILTERItem& item, const std::string& text) {
    if (!HasBothSides(item, text))
        return false;
    if (item.filterOperator == filter_operator::kEqual)
        return CompareNoCase(text, item.value) == 0;
    return IsContainedAs(item.filterOperator, text, item.value);
}

std::string IPv4AddressOf(const std::string& text) {
    std::vector<std::string> pieces;
    Split(text, ".", pieces);
    return pieces.size() == 4 ? text : kNoIPv4Address;
}

/** Returns the address in a string, or `otherwise` if there is none. */
std::string IPv6AddressOf(const std::string& text, const char* otherwise) {
    std::string address;
    int prefix_length = 0;
    return ParseIPv6Address(text, address, prefix_length) ? address : otherwise;
}

}  // namespace

bool IPV4ADDRESSApiAttribute::MatchesFilter(const FILTERItem& item, const std::string& text) const {
    return MatchesAddress(item, text);
}

std::string IPV4ADDRESSApiAttribute::ToText(const std::string& address) const {
    return IPv4AddressOf(address);
}

std::string IPV4ADDRESSApiAttribute::FromText(const std::string& text) const {
    return IPv4AddressOf(text);
}

bool IPV6ADDRESSApiAttribute::MatchesFilter(const FILTERItem& item, const std::string& text) const {
    return MatchesAddress(item, text);
}

std::string IPV6ADDRESSApiAttribute::ToText(const std::string& address) const {
    return IPv6AddressOf(address, "");
}

std::string IPV6ADDRESSApiAttribute::FromText(const std::string& text) const {
    return IPv6AddressOf(text, kNoIPv6Address);
}
