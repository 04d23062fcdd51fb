#pragma once

#include <cstdint>
#include <string>

#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibStore.h"

/** How the values of a column are compared: by SMI base type. */
enum class value_kind { number, text, none };

value_kind value_kind_of(int col_id);

/** Logs why a column's values cannot be compared. */
void log_no_value_kind(int col_id);

/** Whether a value that was kept is that of the variable now. */
bool has_same_value(uint32_t number, const std::string& text, const variable_entry& now);
