#pragma once

#include <string>

#include "tools/checkconf/judgement.h"

namespace checkconf {

/**
 * Whether an address of snmpd's, as in "udp:127.0.0.1:161", serves UDP port 161 at 127.0.0.1. Names of other
 * hosts are not looked at.
 */
Judgement ServesThisMachine(const std::string& address);

}  // namespace checkconf
