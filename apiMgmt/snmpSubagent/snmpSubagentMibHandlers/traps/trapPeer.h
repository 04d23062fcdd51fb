#pragma once

#include <string>

/** The name under which Net-SNMP reaches the configured receiver, from trapDest and trapPort: an address
   gives "udp:..." or "udp6:[...]", a host name without dots its name. 0, or 1 when it leads nowhere, which is
   logged. */
int build_trap_peer_name(std::string* peername);
