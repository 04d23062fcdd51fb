#pragma once

#include <cstdint>
#include <string>

#include "apiMgmt/snmpSubagent/snmpSubagentUtil/netSnmpHeaders.h"

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
