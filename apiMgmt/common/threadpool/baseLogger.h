#pragma once

#include <cstdint>
#include <string>

/** Lines of the application log, and those who take them. */

/** Application log levels: one higher than the numbers of syslog. */
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

/** One line on its way to a logger. */
struct LOGMessage {
    int32_t level = app_level::kInfo;
    bool headerInclude = false;  ///< whether the line names its place in the source
    std::string file;
    std::string func;
    int32_t line = 0;
    std::string category;  ///< the module that it comes from
    std::string message;   ///< without a final newline
};

/** What the application log hands its lines to: a queue with a thread behind it, see LOGTask. */
class BASELogTask {
  public:
    BASELogTask() = default;
    virtual ~BASELogTask() = default;
    BASELogTask(const BASELogTask&) = delete;
    BASELogTask& operator=(const BASELogTask&) = delete;

    /** True when the thread runs, also from before. Not to be called by two threads at a time. */
    virtual bool Start() = 0;

    /** Queues a line. Any thread. Throws GENERALError when the lock fails. */
    virtual void Post(const LOGMessage& message) = 0;
};

/** Where the lines of the log task go. Called by one thread at a time. */
class BASELogger {
  public:
    BASELogger() = default;
    virtual ~BASELogger() = default;
    BASELogger(const BASELogger&) = delete;
    BASELogger& operator=(const BASELogger&) = delete;

    virtual void Log(const LOGMessage& message) = 0;
};
