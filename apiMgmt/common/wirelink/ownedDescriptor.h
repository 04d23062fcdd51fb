#pragma once

#include <unistd.h>

#include <utility>

/** Closes a descriptor unless it is released. */
class OwnedDescriptor {
  public:
    explicit OwnedDescriptor(int descriptor) : descriptor_(descriptor) {}
    ~OwnedDescriptor() {
        if (valid())
            close(descriptor_);
    }
    OwnedDescriptor(const OwnedDescriptor&) = delete;
    OwnedDescriptor& operator=(const OwnedDescriptor&) = delete;

    int get() const { return descriptor_; }
    bool valid() const { return descriptor_ >= 0; }
    int Release() { return std::exchange(descriptor_, -1); }

  private:
    int descriptor_;
};
