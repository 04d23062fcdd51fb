#pragma once

#include <cstddef>

#include "apiMgmt/snmpSubagent/snmpSubagentUtil/netSnmpHeaders.h"

/** The greatest PDU from the daemon that the master agent takes, in octets. A greater one it drops: the
   manager gets no answer, and when agentXTimeout is over the master gives the daemon up. */
inline constexpr size_t kGreatestAnswer = 65536;

/** Octets of the AgentX PDU that answers with these bindings. */
size_t size_of_answer(const netsnmp_variable_list* bindings);
