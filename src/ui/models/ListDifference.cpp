#include "ui/models/ListDifference.h"

#include <algorithm>
#include <limits>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace zentrill {

namespace {

constexpr std::size_t none = std::numeric_limits<std::size_t>::max();

/// For each row of `after`, the row of `before` that holds the same key, or `none`.
std::vector<std::size_t> matches(const std::vector<std::string>& before,
                                 const std::vector<std::string>& after) {
    // The first row of each key that is not taken yet, and after each row the next one of its key.
    std::unordered_map<std::string_view, std::size_t> first;
    first.reserve(before.size());
    std::vector<std::size_t> next(before.size(), none);
    for (std::size_t row = before.size(); row-- > 0;) {
        const auto [place, isNew] = first.try_emplace(before[row], row);
        if (!isNew) {
            next[row] = std::exchange(place->second, row);
        }
    }
    std::vector<std::size_t> result(after.size(), none);
    for (std::size_t row = 0; row < after.size(); ++row) {
        const auto found = first.find(after[row]);
        if (found != first.end() && found->second != none) {
            result[row] = std::exchange(found->second, next[found->second]);
        }
    }
    return result;
}

/// Leaves only a longest ascending run of the matches; the others become `none`.
void keepLongestAscending(std::vector<std::size_t>& match) {
    std::vector<std::size_t> tails; // row of `match` that ends the best run of each length
    std::vector<std::size_t> previous(match.size(), none);
    for (std::size_t row = 0; row < match.size(); ++row) {
        if (match[row] == none) {
            continue;
        }
        const auto place =
            std::ranges::lower_bound(tails, match[row], {}, [&](std::size_t tail) { return match[tail]; });
        if (place != tails.begin()) {
            previous[row] = *std::prev(place);
        }
        if (place == tails.end()) {
            tails.push_back(row);
        } else {
            *place = row;
        }
    }
    std::vector<bool> kept(match.size(), false);
    for (std::size_t row = tails.empty() ? none : tails.back(); row != none; row = previous[row]) {
        kept[row] = true;
    }
    for (std::size_t row = 0; row < match.size(); ++row) {
        if (!kept[row]) {
            match[row] = none;
        }
    }
}

/// The runs of rows that are marked.
std::vector<ListRange> runs(const std::vector<bool>& marked) {
    std::vector<ListRange> result;
    for (std::size_t row = 0; row < marked.size(); ++row) {
        if (!marked[row]) {
            continue;
        }
        if (result.empty() || result.back().first + result.back().count != row) {
            result.push_back({row, 0});
        }
        ++result.back().count;
    }
    return result;
}

} // namespace

ListDifference listDifference(const std::vector<std::string>& before, const std::vector<std::string>& after) {
    if (before == after) {
        return {};
    }
    std::vector<std::size_t> match = matches(before, after);
    keepLongestAscending(match);
    std::vector<bool> removed(before.size(), true);
    std::vector<bool> inserted(after.size(), true);
    for (std::size_t row = 0; row < after.size(); ++row) {
        if (match[row] == none) {
            continue;
        }
        removed[match[row]] = false;
        inserted[row] = false;
    }
    ListDifference difference{.removals = runs(removed), .insertions = runs(inserted)};
    std::ranges::reverse(difference.removals);
    return difference;
}

} // namespace zentrill
