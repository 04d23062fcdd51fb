#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>

#include "apiMgmt/snmpSubagent/snmpSubagentUtil/netSnmpHeaders.h"

/** Kinds of notification, as version 1 counts them. */
inline constexpr int kTrapTypeColdStart = 0;
inline constexpr int kTrapTypeEnterprise = 6;

inline constexpr int kMaxTrapColumns = 16;

/** The columns that each trap number carries, in their order on the wire; NUMBER_OF_COLUMNS ends a list that
   is not full. */
extern std::map<int32_t, std::array<int, kMaxTrapColumns>> varbindings;

/** Fills varbindings from the catalogue; once, at the start. */
void init_varbindings();

/** What a notification consists of, as Send_a_Trap has worked it out. */
struct trap_content {
    int32_t trapVal;
    int trapType;
    const std::string& msg;
    bool is_version_1;
    long uptime;          /**< hundredths of a second */
    const char* agent_ip; /**< IPv4 address of the array for version 1; null: it has none */
};

/** Fills the PDU: header fields, identity, the variables of the trap number from the rows that their columns
    show, the text. 0, or 1 after a log line; the PDU stays the caller's. */
int fill_trap_pdu(netsnmp_pdu* pdu, const trap_content& content);
