#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace mgmtsend {

/** A notification as given on the command line. */
struct TrapRequest {
    std::string kind;  ///< number or keyword
    std::vector<std::string>
        arguments;  ///< those given of A, B, C and D; B may be the keyword of a component
    std::optional<std::string> alert;
    std::string event_id;  ///< for example "13,1,37"; empty: that of the kind
    bool cleared = false;
};

/**
 * Builds a trap command. Throws UsageError if the daemon would reject it whatever the state of the array.
 * Whether the object exists, only the daemon knows.
 */
std::string BuildTrapCommand(const TrapRequest& request);

/** Throws UsageError if the trap command is not a single line or longer than the daemon reads. */
void CheckTrapCommand(const std::string& command);

/** Maximum length of a trap command, in bytes: the daemon ignores the rest. */
extern const size_t kMaximumTrapCommand;

/** Returns the keywords that can follow these arguments of `trap`: of notifications, or as B of components.
 */
std::vector<std::string> TrapKeywords(const std::vector<std::string>& arguments);

/** Lists all notifications with their numbers, keywords, names and arguments. */
std::string ListNotifications();

}  // namespace mgmtsend
