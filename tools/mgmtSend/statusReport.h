#pragma once

#include <string>

namespace mgmtsend {

/**
 * Shows the file in which the daemon publishes its state, in the text format of Prometheus. Each function
 * takes the contents of the file.
 */

/** For people: links, notifications, age of each table, unhealthy objects. `now` is the Unix time. */
std::string FormatStatus(const std::string& metrics, double now);

/** The unhealthy objects only, one per line: since when, status, name, notification. */
std::string FormatUnhealthyObjects(const std::string& metrics);

/** One JSON object with a member for each metric: a number, or an array of objects with the labels and
 * "value". */
std::string FormatStatusJson(const std::string& metrics);

}  // namespace mgmtsend
