#pragma once

#include <cstdint>
#include <span>

#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibColumns.h"

/**
 * The notifications as described by notifications.def: constant data without dependencies, so tools can link
 * it. Strings contain "%d" in place of a number. A string that a rule does not use is empty.
 */

/** How the first or third argument of a trap command selects a row. */
enum class row_rule : uint8_t {
    index,         /**< the row with this API index */
    bounded_index, /**< the same, but the index must not exceed the table's rows */
    next_index,    /**< the row with the next API index */
    controller,    /**< the controller with this API index */
    row,           /**< the row with this number */
    one_or_two,    /**< row 1 for 1 or 2 */
};

/** How the object's state is re-read before it is evaluated. */
enum class fresh_rule : uint8_t {
    table,       /**< refreshes the table after finding the row */
    table_first, /**< refreshes the table before finding the row */
    instance,    /**< reads the object's status only */
};

/** The columns that hold the state of an object or component, and the messages for it. */
struct state_rule {
    row_rule find;
    int index_column;  /**< searched by row_rule::..index; -1 for other rules */
    int status_column; /**< 1 Up, 2 Down, 3 Degraded */
    int owner_column;  /**< names the object in its record */
    int verify_column; /**< shows whether the same object is still in the row */
    const char* unknown;
    const char* too_large;
    const char* missing;
    const char* unhealthy; /**< advice for a status other than Up */
};

/** Advice for a Degraded component that depends on a measured value. */
struct level_rule {
    int reading_column; /**< -1: no rule */
    int threshold_column;
    const char* advice;
};

struct component_definition {
    int32_t trapNum;
    int32_t number;          /**< component number, trapArgB */
    const char* word;        /**< for command lines */
    const char* description; /**< for help texts */
    const char* argument;    /**< meaning of trapArgC */
    state_rule state;
    const char* down;
    const char* degraded;
    level_rule low;  /**< applies if the reading is at or below the threshold */
    level_rule high; /**< applies if it is at or above the threshold */
};

/** The object that a notification is about. */
struct object_rule {
    state_rule state;
    fresh_rule fresh;
    const char* api_name; /**< for fresh_rule::instance */
    std::span<const int> rows;
    bool clears_only_when_up; /**< a clearing command leaves the alert active while the object is not Up */
    const char* no_index;
    const char* not_up; /**< only for components: their parent must be Up */
};

struct notification_definition {
    int32_t number;
    const char* name; /**< in the MIB */
    const char* word; /**< for command lines */
    const char* description;
    const char* argument;         /**< meaning of trapArgA; empty if it has none */
    std::span<const int> columns; /**< its variables, in this order; at most 16 */
    const object_rule* object;    /**< null: not about an object of a table */
};

/** How a SET of a ForceTrap column determines trapArgA. */
enum class force_rule : uint8_t {
    row,        /**< the row number */
    controller, /**< the API index of the row's controller */
    index,      /**< the API index of the row's object */
    component,  /**< the parent's row; trapArgB and trapArgC select the component */
};

struct force_definition {
    int column;
    int32_t trapNum;
    force_rule rule;
    int32_t component; /**< trapArgB */
    int index_column;  /**< API index of the object or component; -1 if not needed */
    const char* event_id;
    const char* word; /**< name of the object in log lines, for force_rule::index */
};

extern const std::span<const int32_t> plain_notifications;
extern const std::span<const notification_definition> notifications;
extern const std::span<const component_definition> components;
extern const std::span<const force_definition> forced_notifications;

/** Return null if there is none. */
const notification_definition* find_notification(int32_t number);
const component_definition* find_component(int32_t trapNum, int32_t number);
