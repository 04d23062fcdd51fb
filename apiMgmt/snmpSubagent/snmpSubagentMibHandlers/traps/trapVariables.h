#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

#include "apiMgmt/snmpSubagent/snmpSubagentMibHandlers/traps/trapQueue.h"
#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibValues.h"

/**
 * What a notification says beyond the state of its object: process-wide values that are scalars of the MIB,
 * so that they can be read after it. Writing one sets the value and its cached variable. Main thread only.
 */

void write_trap_text(std::string& value, int col_id, const std::string& text);
void write_trap_number(int32_t& value, int col_id, int32_t number);

/** Values of trapAlertState. */
inline constexpr int32_t kAlertCleared = 1;
inline constexpr int32_t kAlertActive = 2;

void write_alert_state(int32_t state);
void write_action_text(const std::string& text);

/** A forced notification counts as one for an object that is not healthy, from its SET on. Has no effect
   while a command waits for the array: its notification is still to be built from these values. */
void note_forced_trap();

/** What every command writes, before its object is looked at: event id, alert state, the texts. */
void prepare_trap_variables(TrapToSend& trap);

/** While one exists, a command is being processed. */
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

/** A text of the catalogue with the numbers in place of its "%d". */
std::string with_numbers(std::string_view text, std::initializer_list<int32_t> numbers);

/** Logs such a text: the command is refused. Result 1. */
int refuse_trap(std::string_view text, std::initializer_list<int32_t> numbers = {});

/** The row that a notification shows of a column, from 1. */
void set_trap_row(int col_id, int32_t row);

/** Refreshes the table of a column now. What comes of it shows in the variables. */
void refresh_table_of(int col_id);
