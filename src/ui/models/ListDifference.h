#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace zentrill {

/// A run of rows.
struct ListRange {
    std::size_t first = 0;
    std::size_t count = 0;

    [[nodiscard]] std::size_t last() const noexcept { return first + count - 1; }

    bool operator==(const ListRange&) const = default;
};

/// How to turn one list into another.
struct ListDifference {
    /// Rows of the old list to remove, in this order: the last ones first, so that a removal does not change
    /// the numbers of the following ones.
    std::vector<ListRange> removals;
    /// Rows of the new list to insert afterwards, in ascending order, by their numbers in the new list.
    std::vector<ListRange> insertions;

    bool operator==(const ListDifference&) const = default;
};

/// The difference by keys that keeps as many rows as an order-preserving change can: a row that moved counts
/// as removed and inserted. A key that occurs more than once is matched in order of occurrence. O(n log n).
[[nodiscard]] ListDifference listDifference(const std::vector<std::string>& before,
                                            const std::vector<std::string>& after);

} // namespace zentrill
