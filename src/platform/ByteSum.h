#pragma once

#include <cstdint>
#include <limits>

namespace zentrill {

/// Adds to a sum of sizes that are not negative. It stays at the largest value once it got there: a few
/// sparse files are enough to claim more than 64 bits can tell.
inline void addBytes(std::int64_t& sum, std::int64_t bytes) {
    if (__builtin_add_overflow(sum, bytes, &sum)) {
        sum = std::numeric_limits<std::int64_t>::max();
    }
}

} // namespace zentrill
