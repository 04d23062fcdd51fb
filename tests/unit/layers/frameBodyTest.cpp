#include "apiMgmt/common/wirelink/frameBody.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace {

/** Fills a body in steps of at most `step` bytes. Checks that memory is allocated only as they arrive. */
void Fill(FrameBody& body, const std::string& content, size_t piece, size_t step) {
    size_t filled = 0;
    while (body.missing() > 0) {
        const std::span<char> room = body.Room();
        ASSERT_GE(room.size(), 1u);
        ASSERT_LE(room.size(), std::min(std::max<size_t>(piece, 1), content.size() - filled));
        const size_t count = std::min(step, room.size());
        std::copy_n(content.begin() + static_cast<std::ptrdiff_t>(filled), count, room.begin());
        body.Filled(count);
        filled += count;
    }
    ASSERT_EQ(filled, content.size());
}

/** Reads like a parser: takes bytes, backs up over some of them, skips some. */
std::string ReadWithDetours(FrameBody& body, const std::string& content) {
    std::string read;
    const void* data;
    int size;
    while (body.Next(&data, &size)) {
        const int returned = size / 3;
        read.append(static_cast<const char*>(data), static_cast<size_t>(size - returned));
        body.BackUp(returned);
        if (read.size() % 2 == 1 && read.size() < content.size()) {
            EXPECT_TRUE(body.Skip(1));
            read += content[read.size()];
        }
        EXPECT_EQ(body.ByteCount(), static_cast<int64_t>(read.size()));
    }
    return read;
}

TEST(FrameBody, ReturnsWhatArrivedInPieces) {
    std::string content;
    for (int i = 0; i < 600'000; ++i)
        content += static_cast<char>(i * 31 >> 3);
    for (size_t length : {0, 1, 9, 10, 11, 19, 20, 21, 100})
        for (size_t piece : {1, 2, 10, 100, 1000})
            for (size_t step : {1, 3, 1000}) {
                SCOPED_TRACE(testing::Message()
                             << length << " bytes, pieces of " << piece << ", steps of " << step);
                const std::string part = content.substr(0, length);
                FrameBody body(length, piece);
                Fill(body, part, piece, step);
                EXPECT_EQ(ReadWithDetours(body, part), part);
                EXPECT_FALSE(body.Skip(1));
            }
    FrameBody large(content.size(), 5'242'880);
    Fill(large, content, 262'144, 100'000);
    EXPECT_TRUE(ReadWithDetours(large, content) == content);
}

}  // namespace
