#include "arraySim/model/random.h"

namespace arraysim {

Random Random::For(uint64_t seed, std::string_view topic, uint64_t number) {
    uint64_t hash = 0xcbf29ce484222325u ^ seed;  // FNV-1a
    for (const char c : topic) {
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3u;
    }
    Random random(hash);
    return Random(random.Next() ^ (number * 0x9e3779b97f4a7c15u));
}

uint64_t Random::Next() {
    state_ += 0x9e3779b97f4a7c15u;
    uint64_t mixed = state_;
    mixed = (mixed ^ (mixed >> 30)) * 0xbf58476d1ce4e5b9u;
    mixed = (mixed ^ (mixed >> 27)) * 0x94d049bb133111ebu;
    return mixed ^ (mixed >> 31);
}

int64_t Random::Between(int64_t low, int64_t high) {
    return low + static_cast<int64_t>(Below(static_cast<uint64_t>(high - low) + 1));
}

}  // namespace arraysim
