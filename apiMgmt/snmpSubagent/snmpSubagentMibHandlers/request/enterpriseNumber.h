#pragma once

#include "apiMgmt/snmpSubagent/snmpSubagentUtil/netSnmpHeaders.h"

/**
 * Names in the product family's old enterprise number: what follows 1.3.6.1.4.1.27405 is what follows
 * 1.3.6.1.4.1.913.11000.2000.500.1. The lookups only ever see the current form.
 */

/** The old number was used at least once since the start; chooses the level of the line that reports it. */
extern bool rcvd_req_with_old_enterprise_num;

bool has_old_enterprise_number(const netsnmp_variable_list* binding);

/** Returns whether the name is the old number itself, where a walk enters the old subtree. */
bool is_old_enterprise_number(const netsnmp_variable_list* binding);

/** Writes the name in the current form. False, the name unchanged, when it would become too long. */
bool expand_old_enterprise_number(netsnmp_variable_list* binding);

/** Writes a name in the current form, as it then stands, back into the old one. */
void shrink_to_old_enterprise_number(netsnmp_variable_list* binding);
