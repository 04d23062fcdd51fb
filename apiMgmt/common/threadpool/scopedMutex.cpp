#include "apiMgmt/common/threadpool/scopedMutex.h"

#include "apiMgmt/common/utils/generalError.h"
#include "apiMgmt/common/utils/stringUtil.h"

scopedMutex::scopedMutex(MUTEXWrapper& mutex) : mutex_(mutex) {
    const int code = mutex_.Lock();
    if (code != 0) {
        // The line number in the error is a constant that readers may search for.
        throw GENERALError("apiMgmt/common/threadpool/scopedMutex", 16,
                           FormatString("Error acquiring scoped mutex, error code[%d]", code));
    }
}

scopedMutex::~scopedMutex() {
    mutex_.Unlock();
}
