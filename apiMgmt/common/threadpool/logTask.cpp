#include "apiMgmt/common/threadpool/logTask.h"

#include <pthread.h>
#include <syslog.h>

#include <deque>
#include <utility>

#include "apiMgmt/common/platform/clock.h"
#include "apiMgmt/common/threadpool/mutexWrapper.h"
#include "apiMgmt/common/threadpool/scopedMutex.h"

namespace {

constexpr int32_t kStopLevel = -1000;
constexpr int64_t kTimeToDrainUs = 2 * kSecondUs;

LOGMessage StopMark() {
    LOGMessage mark;
    mark.level = kStopLevel;
    mark.category = "LOGTask";
    mark.message = "stopping logTask";
    return mark;
}

}  // namespace

struct LOGTask::Queue {
    explicit Queue(std::unique_ptr<BASELogger> its_logger) : logger(std::move(its_logger)) {
        pthread_cond_init(&arrived, nullptr);
    }
    ~Queue() { pthread_cond_destroy(&arrived); }
    Queue(const Queue&) = delete;
    Queue& operator=(const Queue&) = delete;

    // Requires the mutex.
    void Append(const LOGMessage& message) {
        messages.push_back(message);
        pthread_cond_signal(&arrived);
    }

    LOGMessage WaitForFirst() {
        scopedMutex lock(mutex);
        while (messages.empty()) {
            pthread_cond_wait(&arrived, mutex.native());
        }
        LOGMessage first = std::move(messages.front());
        messages.pop_front();
        return first;
    }

    const std::unique_ptr<BASELogger> logger;  // used only by the thread
    MUTEXWrapper mutex;
    pthread_cond_t arrived;
    std::deque<LOGMessage> messages;
};

LOGTask::LOGTask(std::unique_ptr<BASELogger> logger) : queue_(std::make_shared<Queue>(std::move(logger))) {}

LOGTask::~LOGTask() {
    Stop();
}

bool LOGTask::has_thread() const {
    scopedMutex lock(queue_->mutex);
    return thread_ != nullptr;
}

bool LOGTask::Start() {
    if (has_thread()) {
        return true;
    }
    auto thread = std::make_unique<THREADWrapper>();
    auto share = std::make_unique<std::shared_ptr<Queue>>(queue_);
    // The mutex must not be held: a failure logs a line, possibly to this task.
    const int code = thread->Run("Logging Task", Work, share.get());
    if (code != 0) {
        syslog(LOG_ERR, "Failed to create LOGTask thread, error code (%d).", code);
        return false;
    }
    (void)share.release();  // owned by the thread now
    scopedMutex lock(queue_->mutex);
    thread_ = std::move(thread);
    return true;
}

void LOGTask::Post(const LOGMessage& message) {
    scopedMutex lock(queue_->mutex);
    if (queue_->logger != nullptr && thread_ != nullptr) {
        queue_->Append(message);
    }
}

void LOGTask::Stop() {
    {
        scopedMutex lock(queue_->mutex);
        if (thread_ == nullptr) {
            return;
        }
        queue_->Append(StopMark());
    }
    ClockSleepMicroseconds(kTimeToDrainUs);
    scopedMutex lock(queue_->mutex);
    thread_ = nullptr;
}

void* LOGTask::Work(void* queue) {
    const std::unique_ptr<std::shared_ptr<Queue>> share(static_cast<std::shared_ptr<Queue>*>(queue));
    Queue& mine = **share;
    for (LOGMessage message = mine.WaitForFirst(); message.level != kStopLevel;
         message = mine.WaitForFirst()) {
        mine.logger->Log(message);
    }
    return nullptr;
}
