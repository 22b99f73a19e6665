#pragma once

#include <cstddef>
#include <functional>
#include <vector>

namespace zentrill {

/// Hashes a record member by member, in the order of the calls.
///
///     return HashCombiner().add(rule.name).add(rule.installedPaths).value();
class HashCombiner {
public:
    template <typename Member>
    HashCombiner& add(const Member& member) {
        return addHash(std::hash<Member>()(member));
    }

    /// The length counts, so that a string moved from one list to the next changes the result.
    template <typename Element>
    HashCombiner& add(const std::vector<Element>& list) {
        add(list.size());
        for (const Element& element : list) {
            add(element);
        }
        return *this;
    }

    [[nodiscard]] std::size_t value() const noexcept { return value_; }

private:
    HashCombiner& addHash(std::size_t hash) noexcept {
        // The golden ratio's bits keep runs of small hashes apart.
        constexpr auto goldenRatio = static_cast<std::size_t>(0x9e3779b97f4a7c15ULL);
        value_ ^= hash + goldenRatio + (value_ << 6U) + (value_ >> 2U);
        return *this;
    }

    std::size_t value_ = 0;
};

} // namespace zentrill
