#pragma once

#include <atomic>
#include <cstdint>
#include <string>

#include "apiMgmt/common/threadpool/baseLogger.h"

/**
 * The application log: any thread may queue lines, which the registered log task writes on its own thread.
 * Without a task, nothing is logged.
 *
 *     if (APPLogger::IsLogged(app_level::kWarning)) {
 *         APPLogger::Log(app_level::kWarning, file, "Run", line, "module", "message without newline");
 *     }
 */
class APPLogger {
  public:
    struct LogModule {
        const char* name;
        uint32_t mask;
    };

    APPLogger() = default;
    /** Deletes the registered task. No other thread may use the log at that time. */
    virtual ~APPLogger();
    APPLogger(const APPLogger&) = delete;
    APPLogger& operator=(const APPLogger&) = delete;

    /** Returns whether lines of this level are logged. Log itself does not check the level. */
    static bool IsLogged(int32_t level);

    /** Queues a line. Throws GENERALError if the queue's lock fails. */
    static void Log(int32_t level, const std::string& file, const std::string& func, int32_t line,
                    const std::string& category, const std::string& message);

    static void SetLogLevel(int32_t level);

    /** Returns "Emergency" to "Debug"; "Info" for any other number. */
    static const char* LevelName(int32_t level);

    /**
     * Starts the task, takes ownership of it and sends all lines to it. Returns false, leaving ownership with
     * the caller, if there already is a task, if it is null or if it cannot be started. Not thread-safe.
     */
    static bool RegisterLogTask(BASELogTask* task);

    /** Case-insensitive. An unknown name counts as enabled while any module is enabled. */
    static bool IsModuleEnabled(const std::string& name);

    /** Returns the names of the enabled modules, separated by " | ". */
    static std::string GetEnabledModules();

    /** Returns a help text for SetModules. */
    static std::string GetModuleHelp();

    /**
     * Enables only the modules with these numbers, as in "1|2|5". A field that is empty or 0 enables all
     * modules; an empty string changes nothing.
     */
    static void SetModules(const std::string& numbers);

    static constexpr int logModuleEnumCount = 9;
    /** A module's number is its index. */
    static const LogModule logModuleEnums[logModuleEnumCount];

    inline static std::atomic<int32_t> logLevel{5};
    inline static std::atomic<uint32_t> logModuleMask{0xff};
    inline static std::atomic<bool> headerInclude{false};
    inline static std::atomic<BASELogTask*> pLogTask{nullptr};
};
