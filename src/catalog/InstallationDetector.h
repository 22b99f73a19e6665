#pragma once

#include "catalog/ApplicationDetectionRule.h"
#include "catalog/InstallationPresence.h"
#include "catalog/PathExpander.h"
#include "platform/FileSystem.h"

#include <functional>
#include <string>
#include <vector>

namespace zentrill {

/// Decides whether a tool is installed, has only left data behind, or is absent. It changes nothing and
/// reports no errors: what cannot be read counts as missing. Paths are literal; wildcards are expanded only
/// for deletion.
///
///     InstallationDetector().presence(rule, expandHome)
struct InstallationDetector {
    using PathPredicate = std::function<bool(const std::string& path)>;

    /// Links are followed: a tool whose executable is a broken link is not installed.
    PathPredicate installedPathExists;
    /// A dangling link counts, because it is leftover data.
    PathPredicate residualPathExists;

    /// Looks through `fileManager`, which must outlive the detector.
    explicit InstallationDetector(const FileSystem& fileManager = FileSystem::shared());

    InstallationDetector(PathPredicate installedPath, PathPredicate residualPath);

    [[nodiscard]] InstallationPresence presence(const ApplicationDetectionRule& rule,
                                                const PathExpander& pathExpander) const;

    /// The same for paths that are expanded already. Stops at the first path that exists, installed paths
    /// first.
    [[nodiscard]] InstallationPresence presence(const std::vector<std::string>& installedPaths,
                                                const std::vector<std::string>& residualDataPaths) const;

    /// Those of `paths` that exist as residual data, without duplicates, in byte order.
    [[nodiscard]] std::vector<std::string> existingPaths(std::vector<std::string> paths) const;
};

} // namespace zentrill
