#include "apiMgmt/snmpSubagent/snmpSubagentUtil/subagentLog.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "apiMgmt/common/platform/clock.h"
#include "apiMgmt/common/threadpool/appLogger.h"
#include "apiMgmt/common/threadpool/mutexWrapper.h"
#include "apiMgmt/common/threadpool/scopedMutex.h"
#include "apiMgmt/common/utils/pathConstants.h"
#include "apiMgmt/common/utils/privateLog.h"

namespace {

constexpr const char* kApplicationLogModule = "snmpSubagent";
constexpr off_t kMaximumLogSize = 3000000;
constexpr off_t kLogSizeAfterCut = 2000000;

// Guarded by subagent_log_mutex.
char message_buffer[4000];
FILE* redirected_stdout = nullptr;
bool is_line_open = false;  // the last message did not end with a newline

// Never destroyed, because a line may be logged while static objects are being destroyed.
MUTEXWrapper& subagent_log_mutex() {
    static auto* mutex = new MUTEXWrapper;
    return *mutex;
}

FILE* open_log() {
    const int descriptor = OpenPrivateLog(kSubagentLogFile);
    if (descriptor < 0)
        return nullptr;
    FILE* stream = fdopen(descriptor, "a");
    if (stream == nullptr)
        close(descriptor);
    return stream;
}

const char* severity(int level) {
    switch (level) {
        case log_level::error:
            return "error";
        case log_level::warning:
            return "warning";
        default:
            return "debug";
    }
}

void write_iso_time(FILE* stream, const tm& local) {
    char time[40];
    strftime(time, sizeof time, "%FT%T", &local);
    const long offset_min = local.tm_gmtoff / 60;
    fprintf(stream, "%s%c%02ld:%02ld", time, offset_min < 0 ? '-' : '+', labs(offset_min) / 60,
            labs(offset_min) % 60);
}

void write_header(FILE* stream, int level, const char* file, const char* operation, int line) {
    const time_t now_s = ClockNow().tv_sec;
    tm local{};
    localtime_r(&now_s, &local);
    if (iso_log_lines) {
        write_iso_time(stream, local);
        fprintf(stream, " %s", severity(level));
    } else {
        fprintf(stream, "%i/%i/20%i %02i:%02i:%02i ", local.tm_mon + 1, local.tm_mday,
                local.tm_year + 1900 - 2000, local.tm_hour, local.tm_min, local.tm_sec);
    }
    fprintf(stream, " %s: %s(%d): ", file, operation, line);
}

// Not freopen: it would close standard output if the log cannot be opened.
void redirect_locked() {
    const int descriptor = OpenPrivateLog(kSubagentLogFile);
    if (descriptor < 0) {
        redirected_stdout = nullptr;
        return;
    }
    fflush(stdout);
    redirected_stdout = dup2(descriptor, STDOUT_FILENO) < 0 ? nullptr : stdout;
    close(descriptor);
}

void reopen_locked() {
    if (redirected_stdout == nullptr)
        return;
    fflush(redirected_stdout);
    redirect_locked();
}

bool has_text(FILE* stream) {
    struct stat status {};
    return fstat(fileno(stream), &status) == 0 && status.st_size > 0;
}

bool ends_with_newline() {
    const size_t length = strlen(message_buffer);
    return length > 0 && message_buffer[length - 1] == '\n';
}

// Writes the message in the buffer. Returns false if the file cannot be opened.
bool write_line(int level, const char* file, const char* operation, int line) {
    reopen_locked();
    const bool through_stdout = redirected_stdout != nullptr;
    FILE* stream = through_stdout ? redirected_stdout : open_log();
    if (stream == nullptr)
        return false;
    if (level != log_level::raw) {
        if (is_line_open && has_text(stream))
            fputc('\n', stream);
        write_header(stream, level, file, operation, line);
    }
    fputs(message_buffer, stream);
    is_line_open = !ends_with_newline();
    if (through_stdout)
        reopen_locked();
    else
        fclose(stream);
    return true;
}

void truncate_locked() {
    struct stat status {};
    if (stat(kSubagentLogFile, &status) != 0 || !S_ISREG(status.st_mode) || status.st_size <= kMaximumLogSize)
        return;
    // If this fails, the next line tries again.
    [[maybe_unused]] const int result = truncate(kSubagentLogFile, kLogSizeAfterCut);
}

int32_t application_level(int level) {
    const bool has_its_own = level > log_level::raw && level < log_level::debug;
    return has_its_own ? level + 1 : app_level::kDebug;
}

// Removes the final newline from the buffer.
void pass_on_to_application_log(int level, const char* file, const char* operation, int line) {
    if (!APPLogger::IsLogged(application_level(level)))
        return;
    if (ends_with_newline())
        message_buffer[strlen(message_buffer) - 1] = '\0';
    APPLogger::Log(application_level(level), file, operation, line, kApplicationLogModule, message_buffer);
}

}  // namespace

void subagent_log(int level, const char* file, const char* operation, int line, const char* format, ...) {
    scopedMutex lock(subagent_log_mutex());
    va_list arguments;
    va_start(arguments, format);
    const int length = vsnprintf(message_buffer, sizeof message_buffer, format, arguments);
    va_end(arguments);
    if (length >= static_cast<int>(sizeof message_buffer))
        message_buffer[sizeof message_buffer - 2] = '\n';  // truncated

    if (write_line(level, file, operation, line))
        pass_on_to_application_log(level, file, operation, line);
    truncate_locked();
}

void redirect_stdout_to_log() {
    scopedMutex lock(subagent_log_mutex());
    redirect_locked();
}

void reopen_redirected_log() {
    scopedMutex lock(subagent_log_mutex());
    reopen_locked();
}

void close_redirected_log() {
    scopedMutex lock(subagent_log_mutex());
    if (redirected_stdout == nullptr)
        return;
    fclose(redirected_stdout);
    redirected_stdout = nullptr;
}

void truncate_subagent_log() {
    scopedMutex lock(subagent_log_mutex());
    truncate_locked();
}
