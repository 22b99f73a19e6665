#pragma once

#include "catalog/InstallationPresence.h"
#include "deletion/DeletionReport.h"

#include <string>
#include <vector>

namespace zentrill {

/// What came of uninstalling one tool.
struct ApplicationUninstallResult {
    /// What is said among the failures of an uninstallation that ended early.
    static constexpr const char* cancelledMessage = "Operation cancelled.";

    DeletionReport deletionReport;
    /// The detector's verdict after the removal.
    InstallationPresence presence = InstallationPresence::absent;
    /// Residual data that still exist: no duplicates, in byte order.
    std::vector<std::string> remainingDataPaths;
    /// Whether it ended before all entries of the rule had their turn.
    bool cancelled = false;

    [[nodiscard]] bool succeeded() const noexcept {
        return deletionReport.succeeded() && presence != InstallationPresence::installed;
    }

    bool operator==(const ApplicationUninstallResult&) const = default;
};

} // namespace zentrill
