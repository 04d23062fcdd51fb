#include "tests/unit/common/recordingLogger.h"

class LogRecord::Logger : public BASELogger {
  public:
    explicit Logger(LogRecord& record) : record_(record) {
        const std::lock_guard guard(record_.mutex_);
        ++record_.loggers_;
    }
    ~Logger() override {
        const std::lock_guard guard(record_.mutex_);
        --record_.loggers_;
        record_.changed_.notify_all();
    }
    void Log(const LOGMessage& message) override {
        std::unique_lock guard(record_.mutex_);
        record_.has_visitor_ = true;
        record_.changed_.notify_all();
        record_.changed_.wait(guard, [this] { return record_.gate_is_open_; });
        record_.has_visitor_ = false;
        record_.messages_.push_back(message);
        record_.changed_.notify_all();
    }

  private:
    LogRecord& record_;
};

std::unique_ptr<BASELogger> LogRecord::MakeLogger() {
    return std::make_unique<Logger>(*this);
}

std::vector<std::string> LogRecord::WaitFor(size_t count) {
    std::unique_lock guard(mutex_);
    changed_.wait(guard, [&] { return messages_.size() >= count; });
    std::vector<std::string> lines;
    for (const LOGMessage& each : messages_) {
        lines.push_back(std::to_string(each.level) + "|" + each.category + "|" + each.message);
    }
    return lines;
}

LOGMessage LogRecord::last() {
    const std::lock_guard guard(mutex_);
    return messages_.back();
}

void LogRecord::WaitForVisitor() {
    std::unique_lock guard(mutex_);
    changed_.wait(guard, [this] { return has_visitor_; });
}

void LogRecord::WaitForEndOfLogger() {
    std::unique_lock guard(mutex_);
    changed_.wait(guard, [this] { return loggers_ == 0; });
}

void LogRecord::SetGate(bool is_open) {
    const std::lock_guard guard(mutex_);
    gate_is_open_ = is_open;
    changed_.notify_all();
}
