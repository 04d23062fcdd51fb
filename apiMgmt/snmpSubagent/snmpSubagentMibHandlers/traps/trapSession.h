#pragma once

#include <string>

#include "apiMgmt/snmpSubagent/snmpSubagentUtil/netSnmpHeaders.h"

/**
 * The calls for a notification that reach the network; tests link others in their place. Main thread only.
 */

/** Prepares the session record of the notifications; ends it. */
void init_trap_session();
void end_trap_session();

/** Address family of a host; AF_UNSPEC when the lookup fails. */
int address_family_of(const std::string& host, bool numeric_only);

/** Null when the peer name does not lead anywhere. */
netsnmp_transport* open_trap_transport(const char* peername);

/** A session for one notification; takes over the transport. Null on failure, the transport is freed then. */
netsnmp_session* open_trap_session(long version, const char* peername, const char* community,
                                   netsnmp_transport* transport);

/** 0 when the PDU was not taken: it is still the caller's. */
int send_trap_pdu(netsnmp_session* session, netsnmp_pdu* pdu);

/** The error of the latest send. */
struct trap_send_error {
    int number;
    std::string text;
};
trap_send_error last_trap_send_error(netsnmp_session* session);

void close_trap_session(netsnmp_session* session);

/** Whether there is a link to the master agent. */
bool has_master_agent();

/**
 * Hands a version 2c notification to the master agent, which sends it to the receivers in its own
 * configuration (trap2sink, informsink, trapsess), with their versions and retries. Never waits: returns false
 * if the master agent does not read what was sent before. The variables stay the caller's. Needs a link.
 */
bool notify_master_agent(netsnmp_variable_list* variables);

/** Hundredths of a second since the machine's start. */
long trap_uptime();
