#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

struct notification_definition;

/** A command line that asks for something that is not to be had, in words. */
class UsageError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/** A notification as a person asks for it. */
struct TrapRequest {
    std::string kind;                    ///< number or word
    std::vector<std::string> arguments;  ///< A, B, C, D as far as given; B may be the word of a component
    std::optional<std::string> alert;
    std::string event_id;  ///< "13,1,37"; empty: that of the kind
    bool cleared = false;
};

/**
 * The trap command text of a request. Throws UsageError when the daemon would refuse it whatever the array is
 * like; whether there is such an object the daemon alone can tell.
 */
std::string TrapText(const TrapRequest& request);

/** Throws UsageError unless the text is one line that the daemon looks at to its end. */
void CheckTrapText(const std::string& text);

/** Bytes that the daemon looks at. */
extern const size_t kGreatestTrapText;

/** A notification about a device takes type and status of it as arguments B and C. */
bool IsAboutDevice(const notification_definition& notification);
inline constexpr const char* kDeviceType = "type of the device, above 0";
inline constexpr const char* kDeviceStatus = "status of the device, above 0";
