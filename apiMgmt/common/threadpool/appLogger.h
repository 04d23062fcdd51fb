#pragma once

#include <atomic>
#include <cstdint>
#include <string>

#include "apiMgmt/common/threadpool/baseLogger.h"

/**
 * The application log of the process: callers on any thread hand in lines, the registered log task writes
 * them on a thread of its own. Without a task the log is silent.
 *
 *     if (APPLogger::IsLogged(app_level::kWarning)) {
 *         APPLogger::Log(app_level::kWarning, file, "Run", line, "module", "text without newline");
 *     }
 */
class APPLogger {
  public:
    struct LogModule {
        const char* name;
        uint32_t mask;
    };

    APPLogger() = default;
    /** Deletes the registered task. No other thread may be using the log then. */
    virtual ~APPLogger();
    APPLogger(const APPLogger&) = delete;
    APPLogger& operator=(const APPLogger&) = delete;

    /** Whether a line of this level has somebody to go to. Log itself does not look at levels. */
    static bool IsLogged(int32_t level);

    /** Queues a line. Throws GENERALError when the queue's lock fails. */
    static void Log(int32_t level, const std::string& file, const std::string& func, int32_t line,
                    const std::string& category, const std::string& message);

    static void SetLogLevel(int32_t level);

    /** "Emergency" to "Debug"; a number that is no level has the name "Info". */
    static const char* LevelName(int32_t level);

    /**
     * Starts the task and makes it the one that lines go to; it is the log's own from then on. False, and
     * the task still the caller's: there is one already, it is null, or it could not start. Not to be
     * called by two threads at a time.
     */
    static bool RegisterLogTask(BASELogTask* task);

    /** In any letter case. A name that is no module counts as enabled while any module is. */
    static bool IsModuleEnabled(const std::string& name);

    /** The names of the enabled modules, with " | " between them. */
    static std::string GetEnabledModules();

    /** What SetModules takes, as a text for people. */
    static std::string GetModuleHelp();

    /**
     * Enables the modules of these numbers alone, as in "1|2|5". An empty field, or one that is 0, enables
     * all of them; an empty text changes nothing.
     */
    static void SetModules(const std::string& numbers);

    static constexpr int logModuleEnumCount = 9;
    /** A module's number is its place. */
    static const LogModule logModuleEnums[logModuleEnumCount];

    inline static std::atomic<int32_t> logLevel{5};
    inline static std::atomic<uint32_t> logModuleMask{0xff};
    inline static std::atomic<bool> headerInclude{false};
    inline static std::atomic<BASELogTask*> pLogTask{nullptr};
};
