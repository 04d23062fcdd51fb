#pragma once

#include <unistd.h>

#include <utility>

/** A descriptor that is closed unless it is handed on. */
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
