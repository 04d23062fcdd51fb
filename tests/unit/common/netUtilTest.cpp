#include "apiMgmt/common/utils/netUtil.h"

#include <gtest/gtest.h>

TEST(NetUtil, ParseIPv6AddressSplitsAtTheLastSlash) {
    const struct {
        const char* text;
        bool valid;
        const char* address;
        int prefix_length;
    } cases[] = {
        {"", false, "", 128},
        {"::1", true, "::1", 128},
        {"fe80::1/64", true, "fe80::1", 64},
        {"fe80::1/", true, "fe80::1", 128},
        {"fe80::1/128", true, "fe80::1", 128},
        {"fe80::1/129", true, "fe80::1", -1},
        {"fe80::1/99999999999999999999", true, "fe80::1", -1},
        {"fe80::1/4294967297", true, "fe80::1", -1},
        {"fe80::1/0", true, "fe80::1", 0},
        {"fe80::1/x", true, "fe80::1", 0},
        {"fe80::1/8x", true, "fe80::1", 8},
        {"fe80::1/-5", true, "fe80::1", -5},
        {"fe80::1/64/48", false, "", 48},
        {"/64", false, "", 64},
        {"1.2.3.4/24", false, "", 24},
        {"::ffff:1.2.3.4", true, "::ffff:1.2.3.4", 128},
        {"fe80::1%eth0", false, "", 128},
        {" ::1", false, "", 128},
    };
    for (const auto& c : cases) {
        std::string address = "old";
        int prefix_length = 7;
        EXPECT_EQ(ParseIPv6Address(c.text, address, prefix_length), c.valid) << c.text;
        EXPECT_EQ(address, c.address) << c.text;
        EXPECT_EQ(prefix_length, c.prefix_length) << c.text;
    }
    std::string text = "::1/64";
    int prefix_length = 0;
    EXPECT_TRUE(ParseIPv6Address(text, text, prefix_length));
    EXPECT_EQ(text, "::1");
    EXPECT_FALSE(ParseIPv6Address(std::string("::1\0x", 5), text, prefix_length));
}
