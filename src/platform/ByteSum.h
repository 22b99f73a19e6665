#pragma once

#include <cstdint>
#include <limits>

namespace zentrill {

/// Adds to a sum of sizes that are not negative. The sum stays at the largest value once it has reached it: a
/// few sparse files can claim more bytes than 64 bits can count.
inline void addBytes(std::int64_t& sum, std::int64_t bytes) {
    if (__builtin_add_overflow(sum, bytes, &sum)) {
        sum = std::numeric_limits<std::int64_t>::max();
    }
}

} // namespace zentrill
