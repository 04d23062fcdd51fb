#pragma once

#include "apiMgmt/snmpSubagent/snmpSubagentUtil/netSnmpHeaders.h"

/**
 * Translation of names in the product family's old enterprise number: 1.3.6.1.4.1.27405 corresponds to
 * 1.3.6.1.4.1.913.11000.2000.500.1. Lookups only ever see current names.
 */

/** Whether the old number was used since start-up. Only its first use is logged as a warning. */
extern bool rcvd_req_with_old_enterprise_num;

bool has_old_enterprise_number(const netsnmp_variable_list* binding);

/** Returns whether the name is the old number itself, the point where a walk enters the old subtree. */
bool is_old_enterprise_number(const netsnmp_variable_list* binding);

/**
 * Translates the name into the current one. Returns false, with the name unchanged, if it would become too
 * long.
 */
bool expand_old_enterprise_number(netsnmp_variable_list* binding);

/** Translates a current name back into the old one. */
void shrink_to_old_enterprise_number(netsnmp_variable_list* binding);
