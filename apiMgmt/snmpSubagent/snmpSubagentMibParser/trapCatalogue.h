#pragma once

#include <cstdint>
#include <span>

#include "apiMgmt/snmpSubagent/snmpSubagentMibParser/mibColumns.h"

/**
 * The notifications as notifications.def describes them: constant data without dependencies, so that tools
 * link it as well. Texts hold "%d" where a number belongs; a text that a rule has no use for is empty.
 */

/** How the first or third argument of a trap command finds a row. */
enum class row_rule : uint8_t {
    index,         /**< the row whose API index it is */
    bounded_index, /**< the same, for an index that is no larger than the table */
    next_index,    /**< the row whose API index follows it */
    controller,    /**< API index of one of the two controllers */
    row,           /**< the row itself */
    one_or_two,    /**< 1 or 2, and both stand for row 1 */
};

/** How the object's state is read anew before it is judged. */
enum class fresh_rule : uint8_t {
    table,       /**< refresh of the whole table, once the row is found */
    table_first, /**< the same before the row is looked for */
    instance,    /**< the status of the one object */
};

/** Where an object's or component's state stands, and what is said of it. */
struct state_rule {
    row_rule find;
    int index_column;  /**< where row_rule::..index looks; -1 for the others */
    int status_column; /**< 1 Up, 2 Down, 3 Degraded */
    int owner_column;  /**< names the object in the memory of what is unhealthy */
    int verify_column; /**< tells whether the same object still stands in the row */
    const char* unknown;
    const char* too_large;
    const char* missing;
    const char* unhealthy; /**< advice for any status but Up */
};

/** Advice that depends on a measured value, for a component that is Degraded. */
struct level_rule {
    int reading_column; /**< -1: no such rule */
    int threshold_column;
    const char* advice;
};

struct component_definition {
    int32_t trapNum;
    int32_t number;          /**< H/W component number, trapArgB */
    const char* word;        /**< for command lines */
    const char* description; /**< what it is */
    const char* argument;    /**< what trapArgC is */
    state_rule state;
    const char* down;
    const char* degraded;
    level_rule low;  /**< the reading is at or below the threshold */
    level_rule high; /**< at or above it */
};

/** The object that a notification is about. */
struct object_rule {
    state_rule state;
    fresh_rule fresh;
    const char* api_name; /**< for fresh_rule::instance */
    std::span<const int> rows;
    bool clears_only_when_up; /**< a clearing command for an object that is not Up does not clear */
    const char* no_index;
    const char* not_up; /**< components only: the object that they belong to must be Up */
};

struct notification_definition {
    int32_t number;
    const char* name; /**< in the MIB */
    const char* word; /**< for command lines */
    const char* description;
    const char* argument;         /**< what trapArgA is; empty when it means nothing */
    std::span<const int> columns; /**< what it carries, in this order; at most 16 */
    const object_rule* object;    /**< null: about no object of a table */
};

/** How a SET of a ForceTrap column finds trapArgA. */
enum class force_rule : uint8_t {
    row,        /**< the row itself */
    controller, /**< the API index of the controller in the row */
    index,      /**< the API index of the object in the row */
    component,  /**< the parent's row; trapArgB and trapArgC name the component */
};

struct force_definition {
    int column;
    int32_t trapNum;
    force_rule rule;
    int32_t component; /**< trapArgB */
    int index_column;  /**< of the object, or of a component that is named by its API index; else -1 */
    const char* event_id;
    const char* word; /**< the object in log lines, for force_rule::index */
};

extern const std::span<const int32_t> plain_notifications;
extern const std::span<const notification_definition> notifications;
extern const std::span<const component_definition> components;
extern const std::span<const force_definition> forced_notifications;

/** Null when there is none. */
const notification_definition* find_notification(int32_t number);
const component_definition* find_component(int32_t trapNum, int32_t number);
