#include "apiMgmt/common/wirelink/accessKey.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

#include "tests/unit/layers/temporaryFolder.h"

namespace {

using namespace std::string_literals;

class AccessKey : public testing::Test {
  protected:
    /** Returns the key from a file with this content and mode. */
    std::string KeyOf(const std::string& content, mode_t mode = 0600) {
        unlink(path_.c_str());
        std::ofstream(path_, std::ios::binary) << content;
        chmod(path_.c_str(), mode);
        return ReadAccessKey(path_.c_str());
    }

    TemporaryFolder folder_;
    const std::string path_ = folder_.Path("key");
};

TEST_F(AccessKey, IsTheFirstLineTrimmed) {
    const std::string longest(65'536, 'k');
    const std::pair<std::string, std::string> cases[] = {
        {"key\n", "key"},
        {" \tkey \r\n", "key"},
        {"AZaz09._~+/=-\nignored second line\xff\n", "AZaz09._~+/=-"},
        {longest + "\nx", longest},
        {"\nkey\n", ""},
        {"   \nkey", ""},
        {"two words\n", ""},
        {"k\xc3\xa4y\n", ""},
        {"key\0\n"s, ""},
        {longest + "x\n", ""},
    };
    for (const auto& [content, key] : cases)
        EXPECT_EQ(KeyOf(content), key) << content.substr(0, 40);
}

TEST_F(AccessKey, NeedsAFileThatOthersCannotReadOrWrite) {
    for (mode_t mode : {0600, 0700, 0611, 0400})
        EXPECT_EQ(KeyOf("key", mode), "key") << std::oct << mode;
    for (mode_t mode : {0640, 0620, 0604, 0602, 0666})
        EXPECT_EQ(KeyOf("key", mode), "") << std::oct << mode;
}

TEST_F(AccessKey, NeedsARegularFileOfTheSameOwner) {
    EXPECT_EQ(ReadAccessKey(path_.c_str()), "") << "missing";
    ASSERT_EQ(KeyOf("key"), "key");

    const std::string link = folder_.Path("link");
    ASSERT_EQ(symlink(path_.c_str(), link.c_str()), 0);
    EXPECT_EQ(ReadAccessKey(link.c_str()), "") << "symlink";

    const std::string fifo = folder_.Path("fifo");
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    EXPECT_EQ(ReadAccessKey(fifo.c_str()), "") << "fifo";
    EXPECT_EQ(ReadAccessKey(folder_.Path("").c_str()), "") << "folder";

    // Only root can change the owner of a file. For other users, system files have another owner.
    const bool is_root = geteuid() == 0;
    if (is_root) {
        ASSERT_EQ(chown(path_.c_str(), 1, 1), 0);
    }
    EXPECT_EQ(ReadAccessKey(is_root ? path_.c_str() : "/etc/hostname"), "") << "another owner";
}

}  // namespace
