#pragma once

#include "catalog/ApplicationDetectionRule.h"
#include "catalog/InstallationPresence.h"
#include "catalog/PathExpander.h"
#include "platform/FileSystem.h"

#include <functional>
#include <string>
#include <vector>

namespace zentrill {

/// Decides whether a tool is installed, has only left data behind, or is absent. Changes nothing, reports no
/// errors: what cannot be read does not exist. Paths are literal; wildcards are expanded only for deletion.
///
///     InstallationDetector().presence(rule, expandHome)
struct InstallationDetector {
    using PathPredicate = std::function<bool(const std::string& path)>;

    /// Links are followed: a broken link in an executable's place does not make a tool installed.
    PathPredicate installedPathExists;
    /// A dangling link counts: left in a data folder it is leftover data.
    PathPredicate residualPathExists;

    /// Over `fileManager`, which must outlive the detector.
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
