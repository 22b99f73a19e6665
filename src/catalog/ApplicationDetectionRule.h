#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace zentrill {

/// What the catalog knows of one tool. Paths are unexpanded: a leading "~" stands for the user's home.
struct ApplicationDetectionRule {
    std::string name;
    /// Paths whose existence means "installed".
    std::vector<std::string> installedPaths;
    /// Configuration and data that survive the tool.
    std::vector<std::string> residualDataPaths;
    /// Everything that an uninstall deletes, in that order; the last part may hold `*` wildcards.
    std::vector<std::string> uninstallPaths;
    /// The Safety Shield keeps them, whatever their names look like.
    std::vector<std::string> credentialPaths;
    /// Names of running processes that block the removal.
    std::vector<std::string> processNames;
    std::optional<std::string> installedVia;

    /// `residualDataPaths`, then every uninstall path that is not an installed path. Entries may occur twice;
    /// the callers only test whether they exist.
    [[nodiscard]] std::vector<std::string> scanResidualDataPaths() const;

    bool operator==(const ApplicationDetectionRule&) const = default;
};

} // namespace zentrill

/// Memberwise, like the equality.
template <>
struct std::hash<zentrill::ApplicationDetectionRule> {
    [[nodiscard]] std::size_t operator()(const zentrill::ApplicationDetectionRule& rule) const;
};
