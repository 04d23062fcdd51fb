#pragma once

#include <string>

#include "tools/checkconf/masterAgentFile.h"

namespace checkconf {

/** What becomes of a request of this machine for the value that the self-test asks for. */
enum class Access {
    kNone,         ///< no line names the community
    kElsewhere,    ///< none that does is for this machine
    kHidden,       ///< the line that counts does not show the value
    kNotLookedAt,  ///< the line that counts cannot be judged by this file alone
    kAnswered
};

/** By the first line that fits community and source: snmpd looks at no second one. */
Access JudgeAccess(const MasterAgentFile& file, const std::string& community);

/** The OID of that value, as in ".1.3.6.1". */
std::string SelfTestOidText();

}  // namespace checkconf
