#pragma once

#include <cstdint>
#include <string>

/** Lines of the application log, and the interfaces that process them. */

/** Application log levels: one above those of syslog. */
namespace app_level {
inline constexpr int32_t kEmergency = 1;
inline constexpr int32_t kAlert = 2;
inline constexpr int32_t kCritical = 3;
inline constexpr int32_t kError = 4;
inline constexpr int32_t kWarning = 5;
inline constexpr int32_t kNotice = 6;
inline constexpr int32_t kInfo = 7;
inline constexpr int32_t kDebug = 8;
}  // namespace app_level

/** A line of the log. */
struct LOGMessage {
    int32_t level = app_level::kInfo;
    bool headerInclude = false;  ///< whether to include file, function and line number
    std::string file;
    std::string func;
    int32_t line = 0;
    std::string category;  ///< the module
    std::string message;   ///< without a final newline
};

/** The queue of the application log, see LOGTask. */
class BASELogTask {
  public:
    BASELogTask() = default;
    virtual ~BASELogTask() = default;
    BASELogTask(const BASELogTask&) = delete;
    BASELogTask& operator=(const BASELogTask&) = delete;

    /** Starts the thread. Returns true if it is running, even if it was already. Not thread-safe. */
    virtual bool Start() = 0;

    /** Queues a line. Any thread. Throws GENERALError if the lock fails. */
    virtual void Post(const LOGMessage& message) = 0;
};

/** The output of the log task. Called by one thread at a time. */
class BASELogger {
  public:
    BASELogger() = default;
    virtual ~BASELogger() = default;
    BASELogger(const BASELogger&) = delete;
    BASELogger& operator=(const BASELogger&) = delete;

    virtual void Log(const LOGMessage& message) = 0;
};
