#include "deletion/UninstallTargets.h"

#include "platform/Text.h"

#include <algorithm>
#include <cstddef>
#include <ranges>
#include <string_view>

#include <glob.h>

namespace zentrill {

namespace {

class GlobMatches {
public:
    explicit GlobMatches(const std::string& pattern)
        : found_(::glob(pattern.c_str(), GLOB_BRACE | GLOB_TILDE, nullptr, &matches_) == 0) {}

    ~GlobMatches() { ::globfree(&matches_); }

    GlobMatches(const GlobMatches&) = delete;
    GlobMatches& operator=(const GlobMatches&) = delete;
    GlobMatches(GlobMatches&&) = delete;
    GlobMatches& operator=(GlobMatches&&) = delete;

    [[nodiscard]] std::vector<std::string> paths() const {
        if (!found_) {
            return {};
        }
        return {matches_.gl_pathv, matches_.gl_pathv + matches_.gl_pathc};
    }

private:
    glob_t matches_{};
    bool found_;
};

/// The length of what `entry` and `expanded` have in common at their ends: the part that the expansion left
/// as the catalog wrote it.
std::size_t commonEnd(std::string_view entry, std::string_view expanded) {
    const auto ends = std::ranges::mismatch(entry | std::views::reverse, expanded | std::views::reverse);
    return static_cast<std::size_t>(ends.in1 - entry.rbegin());
}

std::string escaped(std::string_view literal) {
    std::string pattern;
    for (const char character : literal) {
        if (std::string_view("\\*?[]{},~").find(character) != std::string_view::npos) {
            pattern += '\\';
        }
        pattern += character;
    }
    return pattern;
}

} // namespace

std::vector<std::string> uninstallTargets(const std::string& entry, const std::string& expanded) {
    const std::size_t literalLength = expanded.size() - commonEnd(entry, expanded);
    const std::string_view pattern = std::string_view(expanded).substr(literalLength);
    // A NUL would cut the pattern short and so widen it.
    if (pattern.find_first_of("*?") == std::string_view::npos || hasNul(expanded)) {
        return {expanded};
    }
    return GlobMatches(escaped(std::string_view(expanded).substr(0, literalLength)).append(pattern)).paths();
}

} // namespace zentrill
