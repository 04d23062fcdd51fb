#include "apiMgmt/common/threadpool/threadWrapper.h"

#include <memory>

#include "apiMgmt/common/platform/process.h"
#include "apiMgmt/common/threadpool/appLogger.h"
#include "apiMgmt/common/utils/stringUtil.h"

namespace {

struct ThreadStart {
    std::string name;
    THREADWrapper::Routine routine;
    void* argument;
};

// The thread sets its own name, because its handle becomes invalid as soon as it has returned.
void* NameAndRun(void* argument) {
    const std::unique_ptr<ThreadStart> start(static_cast<ThreadStart*>(argument));
    if (!start->name.empty()) {
        NameThisThread(start->name.c_str());
    }
    return start->routine(start->argument);
}

int CreateDetached(pthread_t* handle, std::unique_ptr<ThreadStart> start) {
    pthread_attr_t attributes;
    int code = pthread_attr_init(&attributes);
    if (code != 0) {
        return code;
    }
    pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
    code = pthread_create(handle, &attributes, NameAndRun, start.get());
    pthread_attr_destroy(&attributes);
    if (code != 0) {
        *handle = pthread_t{};  // undefined after a failed call
        return code;
    }
    (void)start.release();  // owned by the thread now
    return 0;
}

void LogFailureOfRun(int line, const std::string& text) {
    if (APPLogger::IsLogged(app_level::kWarning)) {
        APPLogger::Log(app_level::kWarning, "apiMgmt/common/threadpool/threadWrapper", "Run", line,
                       "ApiMgmtBaseTask", text);
    }
}

}  // namespace

int THREADWrapper::Run(const std::string& name, Routine routine, void* argument) {
    if (handle_ != pthread_t{}) {
        return 0;
    }
    if (routine == nullptr) {
        LogFailureOfRun(__LINE__, "invalid thread handler specified");
        return -1;
    }
    name_ = name;
    const int code =
        CreateDetached(&handle_, std::make_unique<ThreadStart>(ThreadStart{name, routine, argument}));
    if (code != 0) {
        LogFailureOfRun(
            __LINE__, FormatString("Failed to create the thread(%s), error code (%d).", name.c_str(), code));
    }
    return code;
}
