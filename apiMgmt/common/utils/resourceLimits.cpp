#include "apiMgmt/common/utils/resourceLimits.h"

#include <sys/resource.h>
#include <syslog.h>

#include "apiMgmt/common/platform/resourceLimitTable.h"

namespace {

void LogValue(rlim_t value) {
    if (value == RLIM_INFINITY) {
        syslog(LOG_ALERT, "        unlimited");
    } else {
        syslog(LOG_ALERT, "        %ld", static_cast<long>(value));
    }
}

}  // namespace

void LogResourceLimits() {
    syslog(LOG_ALERT, "    Resource Limits (max and cur):\n");
    for (const ResourceLimit& limit : ResourceLimitTable()) {
        syslog(LOG_ALERT, "%s[%d]: %s", limit.name, limit.number, limit.description);
        rlimit values{};
        if (getrlimit(static_cast<decltype(RLIMIT_CPU)>(limit.number), &values) == 0) {
            LogValue(values.rlim_max);
            LogValue(values.rlim_cur);
        }
    }
}
