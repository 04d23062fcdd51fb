#pragma once

#include <cstdint>
#include <string_view>

namespace arraysim {

/** A small generator of its own (splitmix64), so that a seed gives the same array on every machine. */
class Random {
  public:
    explicit Random(uint64_t seed) : state_(seed) {}

    /** A stream that depends on nothing but its arguments: objects keep their values whatever is made
        before them. */
    static Random For(uint64_t seed, std::string_view topic, uint64_t number);

    uint64_t Next();
    /** 0 to count - 1; count must not be 0. */
    uint64_t Below(uint64_t count) { return Next() % count; }
    /** Both ends included. */
    int64_t Between(int64_t low, int64_t high);

  private:
    uint64_t state_;
};

}  // namespace arraysim
