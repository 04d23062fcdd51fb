#include "apiMgmt/common/utils/configFile.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/unit/common/fakeSyslog.h"
#include "tests/unit/layers/temporaryFolder.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

TEST(ConfigFile, ReadsTrimmedKeysAndValues) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("config",
                                          "# key = in a comment\n"
                                          " # not = a comment\n"
                                          "\n"
                                          "   \n"
                                          "no equals sign\n"
                                          " = no key\n"
                                          "twice=old\n"
                                          "\t spaced key \t = \t spaced value \r\n"
                                          "equals=a=b = c\n"
                                          "empty=\n"
                                          "twice=new\n"
                                          "last=without line end");
    EXPECT_THAT(ReadConfigFile(path), ElementsAre(Pair("# not", "a comment"), Pair("empty", ""),
                                                  Pair("equals", "a=b = c"), Pair("last", "without line end"),
                                                  Pair("spaced key", "spaced value"), Pair("twice", "new")));
    EXPECT_THAT(SyslogLines(), IsEmpty());
}

TEST(ConfigFile, AMissingFileIsEmptyAndOneThatIsNotTrustedIsLogged) {
    const TemporaryFolder folder;
    EXPECT_THAT(ReadConfigFile(folder.Path("missing")), IsEmpty());
    EXPECT_THAT(SyslogLines(), IsEmpty());
    const std::string good =
        folder.Write("good", "key=value\n" + std::string(70'000, 'x') + "\nlate=value\n");
    EXPECT_THAT(ReadConfigFile(good), ElementsAre(Pair("key", "value")));
    ASSERT_EQ(symlink(good.c_str(), folder.Path("link").c_str()), 0);
    ASSERT_EQ(mkfifo(folder.Path("fifo").c_str(), 0600), 0);
    const std::string others = folder.Write("others", "key=value\n");
    if (geteuid() == 0) {
        ASSERT_EQ(chown(others.c_str(), 65534, 0), 0);
    }
    for (const char* name : {"", "link", "fifo", "others"}) {
        if (name == std::string("others") && geteuid() != 0) {
            continue;  // only root can change the owner of a file
        }
        EXPECT_THAT(ReadConfigFile(folder.Path(name)), IsEmpty()) << name;
        EXPECT_EQ(SyslogLines().back(), "4|Caught std::exception reading in config file " +
                                            folder.Path(name) +
                                            ": not a regular file that belongs to root or to this user");
    }
}
