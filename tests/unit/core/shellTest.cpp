#include <gtest/gtest.h>
#include <unistd.h>

#include "apiMgmt/snmpSubagent/snmpSubagentMain/shellCommand.h"

namespace {

TEST(ShellWord, ReachesTheProgramAsItStands) {
    const char* const words[] = {"public",      "two words", "it's",       "''", "",   "$HOME",
                                 "`id`",        "a;b|c&d>e", "\"x\"",      "-v", "*",  "~",
                                 "back\\slash", "tab\there", "ends in \\", "!x", "#x", "\xc3\xa4"};
    for (const std::string word : words) {
        const command_output output = open_command("printf '[%s]' " + shell_word(word));
        ASSERT_TRUE(output);
        char text[100] = "";
        const size_t count = fread(text, 1, sizeof text, output.get());
        EXPECT_EQ(std::string(text, count), "[" + word + "]");
    }
    EXPECT_EQ(shell_word("plain-word_1.2:3/4@5"), "plain-word_1.2:3/4@5");
}

TEST(RunCommand, GivesTheStatusOfTheShellWhichInheritsNoDescriptor) {
    ASSERT_EQ(dup2(STDERR_FILENO, 9), 9);
    EXPECT_EQ(run_command("test ! -e /proc/self/fd/9 || exit 4; exit 3"), 3 << 8);
}

}  // namespace
