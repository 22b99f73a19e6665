#include "ui/models/ListDifference.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <map>
#include <numeric>
#include <random>

namespace zentrill {
namespace {

using Keys = std::vector<std::string>;

Keys applied(const ListDifference& difference, Keys list, const Keys& after) {
    for (const ListRange& range : difference.removals) {
        const auto first = list.begin() + static_cast<std::ptrdiff_t>(range.first);
        list.erase(first, first + static_cast<std::ptrdiff_t>(range.count));
    }
    for (const ListRange& range : difference.insertions) {
        const auto source = after.begin() + static_cast<std::ptrdiff_t>(range.first);
        list.insert(list.begin() + static_cast<std::ptrdiff_t>(range.first), source,
                    source + static_cast<std::ptrdiff_t>(range.count));
    }
    return list;
}

std::size_t rowsIn(const std::vector<ListRange>& ranges) {
    return std::accumulate(ranges.begin(), ranges.end(), std::size_t{0},
                           [](std::size_t sum, const ListRange& range) { return sum + range.count; });
}

/// The length of a longest ascending run of the matches, by comparing every pair.
std::size_t longestKept(const Keys& before, const Keys& after) {
    std::map<std::string, std::vector<std::size_t>> rows;
    for (std::size_t row = before.size(); row-- > 0;) {
        rows[before[row]].push_back(row);
    }
    std::vector<std::size_t> match;
    for (const std::string& key : after) {
        std::vector<std::size_t>& left = rows[key];
        if (left.empty()) {
            continue;
        }
        match.push_back(left.back());
        left.pop_back();
    }
    std::vector<std::size_t> best(match.size(), 1);
    for (std::size_t end = 0; end < match.size(); ++end) {
        for (std::size_t start = 0; start < end; ++start) {
            if (match[start] < match[end]) {
                best[end] = std::max(best[end], best[start] + 1);
            }
        }
    }
    return best.empty() ? 0 : *std::ranges::max_element(best);
}

Keys numbered(std::size_t count) {
    Keys keys;
    for (std::size_t number = 0; number < count; ++number) {
        keys.push_back(std::to_string(number));
    }
    return keys;
}

TEST(ListDifferenceTest, IsEmptyForEqualLists) {
    EXPECT_EQ(listDifference({"a", "b"}, {"a", "b"}), ListDifference{});
    EXPECT_EQ(listDifference({}, {}), ListDifference{});
}

TEST(ListDifferenceTest, FillsAndEmptiesAListInOneStep) {
    EXPECT_EQ(listDifference({}, {"a", "b"}), (ListDifference{.insertions = {{0, 2}}}));
    EXPECT_EQ(listDifference({"a", "b"}, {}), (ListDifference{.removals = {{0, 2}}}));
}

TEST(ListDifferenceTest, RemovesTheLastRowsFirst) {
    EXPECT_EQ(listDifference({"a", "b", "c", "d", "e"}, {"b", "d"}),
              (ListDifference{.removals = {{4, 1}, {2, 1}, {0, 1}}}));
}

TEST(ListDifferenceTest, CountsAMovedRowAsRemovedAndInserted) {
    EXPECT_EQ(listDifference({"a", "b", "c"}, {"b", "c", "a"}),
              (ListDifference{.removals = {{0, 1}}, .insertions = {{2, 1}}}));
}

TEST(ListDifferenceTest, MatchesEqualKeysInOrderOfOccurrence) {
    EXPECT_EQ(listDifference({"a", "a"}, {"a", "a", "a"}), (ListDifference{.insertions = {{2, 1}}}));
    EXPECT_EQ(listDifference({"a", "a", "a"}, {"a"}), (ListDifference{.removals = {{1, 2}}}));
}

TEST(ListDifferenceTest, TurnsRandomListsIntoEachOtherAndKeepsAsManyRowsAsPossible) {
    std::mt19937 random(20240607);
    for (int round = 0; round < 3000; ++round) {
        const auto randomKeys = [&] {
            Keys keys(random() % 14);
            // Few letters make duplicates common.
            std::ranges::generate(keys,
                                  [&] { return std::string(1, static_cast<char>('a' + random() % 8)); });
            return keys;
        };
        const Keys before = randomKeys();
        const Keys after = randomKeys();
        const ListDifference difference = listDifference(before, after);
        ASSERT_EQ(applied(difference, before, after), after)
            << ::testing::PrintToString(before) << " -> " << ::testing::PrintToString(after);
        const std::size_t kept = before.size() - rowsIn(difference.removals);
        ASSERT_EQ(kept, after.size() - rowsIn(difference.insertions));
        ASSERT_EQ(kept, longestKept(before, after))
            << ::testing::PrintToString(before) << " -> " << ::testing::PrintToString(after);
    }
}

TEST(ListDifferenceTest, ReversesTenThousandRowsAtOnce) {
    const Keys before = numbered(10'000);
    Keys after = before;
    std::ranges::reverse(after);
    const ListDifference difference = listDifference(before, after);
    EXPECT_EQ(rowsIn(difference.removals), before.size() - 1);
    EXPECT_TRUE(applied(difference, before, after) == after);
}

TEST(ListDifferenceTest, ShufflesTenThousandRows) {
    const Keys before = numbered(10'000);
    Keys after = before;
    std::shuffle(after.begin(), after.end(), std::mt19937(7));
    const auto start = std::chrono::steady_clock::now();
    const ListDifference difference = listDifference(before, after);
    // A quadratic comparison of ten thousand keys takes far longer than this on any machine.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
    EXPECT_TRUE(applied(difference, before, after) == after);
}

} // namespace
} // namespace zentrill
