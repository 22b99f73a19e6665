#pragma once

#include <string>
#include <vector>

namespace zentrill {

/// What came of removing the program itself.
struct SelfUninstallResult {
    /// In the order of removal.
    std::vector<std::string> removedPaths;
    /// Complete user-facing messages.
    std::vector<std::string> failures;
    /// The program's own paths that still exist afterwards.
    std::vector<std::string> remainingPaths;

    [[nodiscard]] bool succeeded() const noexcept { return failures.empty() && remainingPaths.empty(); }

    bool operator==(const SelfUninstallResult&) const = default;
};

} // namespace zentrill
