#include "catalog/InstallationDetector.h"

#include <algorithm>
#include <utility>

namespace zentrill {

namespace {

std::vector<std::string> expanded(std::vector<std::string> paths, const PathExpander& pathExpander) {
    std::ranges::transform(paths, paths.begin(), pathExpander);
    return paths;
}

} // namespace

InstallationDetector::InstallationDetector(const FileSystem& fileManager)
    : installedPathExists([&fileManager](const std::string& path) { return fileManager.fileExists(path); }),
      residualPathExists([&fileManager](const std::string& path) {
          return fileManager.fileExists(path) || fileManager.symbolicLinkDestination(path).has_value();
      }) {}

InstallationDetector::InstallationDetector(PathPredicate installedPath, PathPredicate residualPath)
    : installedPathExists(std::move(installedPath)), residualPathExists(std::move(residualPath)) {}

InstallationPresence InstallationDetector::presence(const ApplicationDetectionRule& rule,
                                                    const PathExpander& pathExpander) const {
    return presence(expanded(rule.installedPaths, pathExpander),
                    expanded(rule.scanResidualDataPaths(), pathExpander));
}

InstallationPresence InstallationDetector::presence(const std::vector<std::string>& installedPaths,
                                                    const std::vector<std::string>& residualDataPaths) const {
    if (std::ranges::any_of(installedPaths, installedPathExists)) {
        return InstallationPresence::installed;
    }
    if (std::ranges::any_of(residualDataPaths, residualPathExists)) {
        return InstallationPresence::residualData;
    }
    return InstallationPresence::absent;
}

std::vector<std::string> InstallationDetector::existingPaths(std::vector<std::string> paths) const {
    std::ranges::sort(paths);
    const auto duplicates = std::ranges::unique(paths);
    paths.erase(duplicates.begin(), duplicates.end());
    std::erase_if(paths, [this](const std::string& path) { return !residualPathExists(path); });
    return paths;
}

} // namespace zentrill
