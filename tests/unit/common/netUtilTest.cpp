#include "apiMgmt/common/utils/netUtil.h"

#include <gtest/gtest.h>

TEST(NetUtil, ParseIPv6AddressSplitsAtTheLastSlash) {
    const std::tuple<const char*, bool, const char*, int> cases[] = {
        {"", false, "", 128},
        {"fe80::1/64", true, "fe80::1", 64},
        {"fe80::1/", true, "fe80::1", 128},
        {"fe80::1/129", true, "fe80::1", -1},
        {"fe80::1/99999999999999999999", true, "fe80::1", -1},
        {"fe80::1/4294967297", true, "fe80::1", -1},
        {"fe80::1/x", true, "fe80::1", 0},
        {"fe80::1/-5", true, "fe80::1", -5},
        {"fe80::1/64/48", false, "", 48},
        {"::ffff:1.2.3.4", true, "::ffff:1.2.3.4", 128},
        {" ::1", false, "", 128},
    };
    for (const auto& [each_text, valid, each_address, each_prefix_length] : cases) {
        std::string address = "old";
        int prefix_length = 7;
        EXPECT_EQ(ParseIPv6Address(each_text, address, prefix_length), valid) << each_text;
        EXPECT_EQ(address, each_address) << each_text;
        EXPECT_EQ(prefix_length, each_prefix_length) << each_text;
    }
    std::string text = "::1/64";
    int prefix_length = 0;
    EXPECT_TRUE(ParseIPv6Address(text, text, prefix_length));
    EXPECT_EQ(text, "::1");
    EXPECT_FALSE(ParseIPv6Address(std::string("::1\0x", 5), text, prefix_length));
}
