#include "apiMgmt/common/utils/resourceLimits.h"

#include <gmock/gmock.h>
#include <sys/resource.h>

#include <algorithm>

#include "tests/unit/common/fakeSyslog.h"

TEST(ResourceLimits, ListsTheHardLimitBeforeTheCurrentOne) {
    const rlimit open_files{100, 200};
    const rlimit core{50, RLIM_INFINITY};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &open_files), 0);
    rlimit actual_core{};
    setrlimit(RLIMIT_CORE, &core);  // only the superuser may lift the hard limit
    getrlimit(RLIMIT_CORE, &actual_core);

    LogResourceLimits();

    const std::vector<std::string> lines = SyslogLines();
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines[0], "1|    Resource Limits (max and cur):\n");
    const auto block = [&lines](const std::string& head) {
        const auto found = std::find(lines.begin(), lines.end(), head);
        return lines.end() - found < 3 ? std::vector<std::string>{}
                                       : std::vector<std::string>(found + 1, found + 3);
    };
    EXPECT_THAT(block("1|RLIMIT_NOFILE[" + std::to_string(RLIMIT_NOFILE) + "]: number of files"),
                testing::ElementsAre("1|        200", "1|        100"));
    const std::string hard =
        actual_core.rlim_max == RLIM_INFINITY ? "unlimited" : std::to_string(actual_core.rlim_max);
    EXPECT_THAT(
        block("1|RLIMIT_CORE[" + std::to_string(RLIMIT_CORE) + "]: core file size"),
        testing::ElementsAre("1|        " + hard, "1|        " + std::to_string(actual_core.rlim_cur)));
}
