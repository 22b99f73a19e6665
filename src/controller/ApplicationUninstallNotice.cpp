#include "controller/ApplicationUninstallNotice.h"

#include <algorithm>

namespace zentrill {

ApplicationUninstallNotice::ApplicationUninstallNotice(
    std::size_t removedCount, std::size_t appCount,
    const std::map<std::string, std::vector<std::string>>& remainingData,
    const std::vector<std::string>& failures)
    : title("Uninstallation Completed"),
      message("Removed " + std::to_string(removedCount) + " filesystem items for " +
              std::to_string(appCount) + " application(s).") {
    if (!failures.empty()) {
        title += " with Errors";
    } else if (!remainingData.empty()) {
        title += " with Data Remaining";
    }
    if (!remainingData.empty()) {
        message += "\nRemaining selected-app data (not deleted; review before removing manually):";
    }
    for (const auto& [name, unsortedPaths] : remainingData) {
        std::vector<std::string> paths = unsortedPaths;
        std::ranges::sort(paths);
        for (const std::string& path : paths) {
            message.append("\n").append(name).append(": ").append(path);
            remainingPaths.push_back(path);
        }
    }
    if (!failures.empty()) {
        message += "\nErrors:";
    }
    for (const std::string& failure : failures) {
        message.append("\n").append(failure);
    }
}

} // namespace zentrill
