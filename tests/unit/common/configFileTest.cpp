#include "apiMgmt/common/utils/configFile.h"

#include <gmock/gmock.h>

#include "tests/unit/common/fakeSyslog.h"
#include "tests/unit/common/tempFolder.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::StartsWith;

TEST(ConfigFile, ReadsTrimmedKeysAndValues) {
    const TempFolder folder;
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

TEST(ConfigFile, AMissingFileIsEmptyAndAReadErrorIsLogged) {
    const TempFolder folder;
    EXPECT_THAT(ReadConfigFile(folder.path("missing")), IsEmpty());
    EXPECT_THAT(SyslogLines(), IsEmpty());
    EXPECT_THAT(ReadConfigFile(folder.path("")), IsEmpty());  // a folder opens and cannot be read
    EXPECT_THAT(SyslogLines(), ElementsAre(StartsWith("4|Caught std::exception reading in config file " +
                                                      folder.path("") + ": ")));
}
