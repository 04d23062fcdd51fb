#pragma once

#include <google/protobuf/io/zero_copy_stream.h>

#include <cstdint>
#include <deque>
#include <memory>
#include <span>

/**
 * The body of one frame: filled piece by piece as its bytes arrive, then read by the message parser. A
 * piece is allocated when its first byte is awaited and freed, in the last pass over the body, when the
 * parser asks for the next, so that neither a length that lies nor a large answer costs more memory than
 * needs be.
 */
class FrameBody : public google::protobuf::io::ZeroCopyInputStream {
  public:
    /** piece_size: the most memory that is held ahead of the bytes that have arrived. */
    FrameBody(size_t length, size_t piece_size);

    size_t missing() const { return length_ - arrived_; }

    /** Where the next bytes go. Call only while some are missing. */
    std::span<char> Room();
    void Filled(size_t count) { arrived_ += count; }

    /** Starts again at the first byte. Pieces are freed only from here on. */
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
