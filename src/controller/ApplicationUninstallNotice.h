#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace zentrill {

/// What the user is told after the uninstallation of one or several tools.
struct ApplicationUninstallNotice {
    std::string title;
    /// Lines joined by "\n".
    std::string message;
    /// The paths that `message` lists as remaining, in its order.
    std::vector<std::string> remainingPaths;

    /// `remainingData` maps the name of an application to its paths that still exist; `failures` are
    /// complete sentences.
    ApplicationUninstallNotice(std::size_t removedCount, std::size_t appCount,
                               const std::map<std::string, std::vector<std::string>>& remainingData,
                               const std::vector<std::string>& failures);

    bool operator==(const ApplicationUninstallNotice&) const = default;
};

} // namespace zentrill
