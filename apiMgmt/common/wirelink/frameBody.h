#pragma once

#include <google/protobuf/io/zero_copy_stream.h>

#include <cstdint>
#include <deque>
#include <memory>
#include <span>

/**
 * The body of one frame, filled in pieces as bytes arrive and then read by the message parser. A piece is
 * allocated when its first byte is expected. During the last pass it is freed when the parser asks for the
 * next. So neither a false length nor a large response takes more memory than necessary.
 */
class FrameBody : public google::protobuf::io::ZeroCopyInputStream {
  public:
    /** `piece_size` is the maximum memory allocated ahead of the bytes that have arrived. */
    FrameBody(size_t length, size_t piece_size);

    size_t missing() const { return length_ - arrived_; }

    /** Returns the buffer for the next bytes. Call only while some are missing. */
    std::span<char> Room();
    void Filled(size_t count) { arrived_ += count; }

    /** Returns to the first byte for the last pass, which frees the pieces. */
    void Rewind();

    bool Next(const void** data, int* size) override;
    void BackUp(int count) override { read_ -= static_cast<size_t>(count); }
    bool Skip(int count) override;
    int64_t ByteCount() const override { return static_cast<int64_t>(read_); }

  private:
    size_t length_;
    size_t piece_size_;
    size_t arrived_ = 0;
    size_t read_ = 0;
    bool frees_pieces_ = false;
    size_t freed_pieces_ = 0;
    std::deque<std::unique_ptr<char[]>> pieces_;
};
