#pragma once

#include <cstdint>
#include <string_view>

namespace arraysim {

/** A random number generator (splitmix64) that yields the same numbers on every machine. */
class Random {
  public:
    explicit Random(uint64_t seed) : state_(seed) {}

    /** Returns a generator that depends only on the arguments, so that the values of an object do not depend
       on those created before it. */
    static Random For(uint64_t seed, std::string_view topic, uint64_t number) {
        uint64_t hash = 0xcbf29ce484222325u ^ seed;  // FNV-1a
        for (const char c : topic) {
            hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3u;
        }
        Random random(hash);
        return Random(random.Next() ^ (number * 0x9e3779b97f4a7c15u));
    }

    uint64_t Next() {
        state_ += 0x9e3779b97f4a7c15u;
        uint64_t mixed = state_;
        mixed = (mixed ^ (mixed >> 30)) * 0xbf58476d1ce4e5b9u;
        mixed = (mixed ^ (mixed >> 27)) * 0x94d049bb133111ebu;
        return mixed ^ (mixed >> 31);
    }

    /** Returns 0 to count - 1; count must not be 0. */
    uint64_t Below(uint64_t count) { return Next() % count; }

    /** Returns low to high, inclusive. */
    int64_t Between(int64_t low, int64_t high) {
        return low + static_cast<int64_t>(Below(static_cast<uint64_t>(high - low) + 1));
    }

  private:
    uint64_t state_;
};

}  // namespace arraysim
