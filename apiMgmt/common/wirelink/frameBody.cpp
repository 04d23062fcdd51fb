#include "apiMgmt/common/wirelink/frameBody.h"

#include <algorithm>

namespace {

constexpr size_t kMaximumPiece = 262'144;  // step in which parsed input is freed

}  // namespace

FrameBody::FrameBody(size_t length, size_t piece_size)
    : length_(length), piece_size_(std::clamp<size_t>(piece_size, 1, kMaximumPiece)) {}

std::span<char> FrameBody::Room() {
    const size_t used = arrived_ % piece_size_;
    const size_t size = std::min(piece_size_, length_ - (arrived_ - used));
    if (used == 0)
        pieces_.push_back(std::make_unique_for_overwrite<char[]>(size));
    return {pieces_.back().get() + used, size - used};
}

void FrameBody::Rewind() {
    read_ = 0;
    frees_pieces_ = true;
}

bool FrameBody::Next(const void** data, int* size) {
    if (read_ == arrived_)
        return false;
    for (; frees_pieces_ && freed_pieces_ < read_ / piece_size_; ++freed_pieces_)
        pieces_.pop_front();
    const size_t used = read_ % piece_size_;
    const size_t count = std::min(piece_size_ - used, arrived_ - read_);
    *data = pieces_[read_ / piece_size_ - freed_pieces_].get() + used;
    *size = static_cast<int>(count);
    read_ += count;
    return true;
}

bool FrameBody::Skip(int count) {
    const size_t step = std::min(static_cast<size_t>(count), arrived_ - read_);
    read_ += step;
    return step == static_cast<size_t>(count);
}
