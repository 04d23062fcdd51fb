#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapQueue.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibValues.h"

/**
 * The trap variables: the contents of a notification other than its object's state. They are process-wide
 * values and scalars of the MIB, so they can be read afterwards. Each function writes the value and its
 * variable in the store. Main thread only.
 */

void write_trap_text(std::string& value, int col_id, const std::string& text);
void write_trap_number(int32_t& value, int col_id, int32_t number);

/** Values of trapAlertState. */
inline constexpr int32_t kAlertCleared = 1;
inline constexpr int32_t kAlertActive = 2;

void write_alert_state(int32_t state);
void write_action_text(const std::string& text);

/**
 * Marks the alert as active, because a SET requests a notification. Has no effect while another command is
 * being processed, because its notification is built from the same values.
 */
void note_forced_trap();

/** Writes the variables that do not depend on the object: event ID, alert state, strings. */
void prepare_trap_variables(TrapToSend& trap);

/** While an instance exists, a command is being processed. */
class trap_command_in_hand {
  public:
    trap_command_in_hand();
    ~trap_command_in_hand();
    trap_command_in_hand(const trap_command_in_hand&) = delete;
    trap_command_in_hand& operator=(const trap_command_in_hand&) = delete;
};

/** Values of the status columns. */
inline constexpr uint32_t kStatusUp = 1;
inline constexpr uint32_t kStatusDown = 2;
inline constexpr uint32_t kStatusDegraded = 3;

/** Returns a string of the catalogue with the numbers in place of its "%d". */
std::string with_numbers(std::string_view text, std::initializer_list<int32_t> numbers);

/** Logs such a string as the reason why a command is rejected. Returns 1. */
int reject_trap(std::string_view text, std::initializer_list<int32_t> numbers = {});

/** Selects the row of a column (from 1) that a notification shows. */
void set_trap_row(int col_id, int32_t row);

/** Refreshes the column's table immediately. Callers check the variables, not the outcome. */
void refresh_table_of(int col_id);
