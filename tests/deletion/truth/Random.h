#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zentrill::test {

/// The same numbers for the same seed on every system and with every library (SplitMix64).
class Random {
public:
    explicit Random(std::uint64_t seed) : state_(seed) {}

    std::uint64_t next() {
        state_ += 0x9e3779b97f4a7c15U;
        std::uint64_t mixed = state_;
        mixed = (mixed ^ (mixed >> 30U)) * 0xbf58476d1ce4e5b9U;
        mixed = (mixed ^ (mixed >> 27U)) * 0x94d049bb133111ebU;
        return mixed ^ (mixed >> 31U);
    }

    /// From 0 to `count` - 1.
    std::size_t below(std::size_t count) { return static_cast<std::size_t>(next() % count); }

    bool percent(unsigned chance) { return below(100) < chance; }

    template <typename Value>
    const Value& pick(const std::vector<Value>& values) {
        return values[below(values.size())];
    }

private:
    std::uint64_t state_;
};

} // namespace zentrill::test
