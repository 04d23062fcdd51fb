#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapPeer.h"

#include <sys/socket.h>

#include "apiMgmt/common/utils/stringUtil.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMain/subagentConf.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapSession.h"
#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

namespace {

bool is_internet(int family) {
    return family == AF_INET || family == AF_INET6;
}

int refuse_destination(const char* kind) {
    SUBAGENT_LOG(4, "Invalid %s: %s\n", kind, conf_trapDest.c_str());
    return 1;
}

// `format` takes the destination and the port.
int accept_destination(std::string* peername, const char* before, const char* after) {
    *peername = before + conf_trapDest + after + std::to_string(conf_trapPort);
    return 0;
}

}  // namespace

int build_trap_peer_name(std::string* peername) {
    const int numeric_family = address_family_of(conf_trapDest, true);
    const bool is_numeric = numeric_family != AF_UNSPEC;
    if (is_numeric && !is_internet(numeric_family))
        return refuse_destination("format for trap dest addr");
    if (!is_numeric && address_family_of(conf_trapDest, false) == AF_UNSPEC)
        return refuse_destination("trap dest addr");
    if (conf_trapDest.find(':') != std::string::npos) {
        if (numeric_family != AF_INET6)
            return refuse_destination("IPv6 trap dest addr");
        return accept_destination(peername, "udp6:[", "]:");
    }
    if (conf_trapDest.find('.') != std::string::npos) {
        if (numeric_family != AF_INET)
            return refuse_destination("IPv4 trap dest addr");
        return accept_destination(peername, "udp:", ":");
    }
    if (!is_internet(address_family_of(conf_trapDest, is_numeric)))
        return refuse_destination("trap dest addr");
    return accept_destination(peername, "", ":");
}
