#pragma once

#include <string>

#include "tools/checkconf/masterAgentFile.h"

namespace checkconf {

/** Result of a check; unknown if it depends on other files or on a name service. */
enum class Verdict { kNo, kYes, kUnknown };

/**
 * Returns whether an address of snmpd, for example "udp:127.0.0.1:161", includes UDP port 161 at 127.0.0.1,
 * where the self-test sends its requests.
 */
Verdict IncludesSelfTestAddress(const std::string& address);

/** Access of the self-test to its value. */
enum class Access {
    kNone,       ///< no line names the community
    kElsewhere,  ///< lines name it, but not for this machine
    kHidden,     ///< the line that applies excludes the value
    kUnknown,    ///< the line that applies depends on more than this file
    kGranted
};

/** Finds the access of a community. Like snmpd, uses only the first line that matches community and source.
 */
Access FindAccess(const MasterAgentFile& file, const std::string& community);

/** Returns the OID of the self-test's value, for example ".1.3.6.1". */
std::string SelfTestOidText();

}  // namespace checkconf
