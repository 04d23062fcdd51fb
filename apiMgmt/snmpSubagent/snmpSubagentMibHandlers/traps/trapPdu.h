#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>

#include "apiMgmt/snmpSubagent/snmpSubagentUtil/netSnmpHeaders.h"

/** SNMPv1 generic trap numbers. */
inline constexpr int kTrapTypeColdStart = 0;
inline constexpr int kTrapTypeEnterprise = 6;

inline constexpr int kMaxTrapColumns = 16;

/** The columns of each notification, in the order of the PDU. NUMBER_OF_COLUMNS ends a shorter list. */
extern std::map<int32_t, std::array<int, kMaxTrapColumns>> varbindings;

/** Fills varbindings from the catalogue. Call once, at start-up. */
void init_varbindings();

/** The contents of a notification. */
struct trap_content {
    int32_t trapVal;
    int trapType;
    const std::string& msg;
    bool is_version_1;
    long uptime;          /**< hundredths of a second */
    const char* agent_ip; /**< IPv4 address of the array for SNMPv1; null if it has none */
};

/**
 * Fills the PDU: header, identity, the notification's variables and the string. Returns 0, or 1 after logging
 * the error. The caller keeps ownership of the PDU.
 */
int fill_trap_pdu(netsnmp_pdu* pdu, const trap_content& content);
