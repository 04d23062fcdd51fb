#pragma once

#include <string>

#include "apiMgmt/snmpSubagent/snmpSubagentUtil/netSnmpHeaders.h"

/** The calls for a notification that reach the network. Tests link fakes in their place. Main thread only. */

/** Initialise and close the session template. */
void init_trap_session();
void end_trap_session();

/** Returns the address family of a host; AF_UNSPEC if the lookup fails. */
int address_family_of(const std::string& host, bool numeric_only);

/** Returns null if the peer name is invalid. */
netsnmp_transport* open_trap_transport(const char* peername);

/**
 * Opens a session for one notification and takes ownership of the transport. Returns null on failure, after
 * freeing the transport.
 */
netsnmp_session* open_trap_session(long version, const char* peername, const char* community,
                                   netsnmp_transport* transport);

/** Returns 0 if the PDU was not accepted; the caller still owns it. */
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
 * configuration (trap2sink, informsink, trapsess), with their versions and retries. Never waits: returns
 * false if the master agent has not read the previous notifications. The caller keeps ownership of the
 * variables. Needs a link.
 */
bool notify_master_agent(netsnmp_variable_list* variables);

/** Returns hundredths of a second since the machine's boot. */
long trap_uptime();
