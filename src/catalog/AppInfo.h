#pragma once

#include "catalog/AppCategory.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace zentrill {

/// One catalog tool as listed: what it is, where it lives, what the last scan found, whether the user
/// selected it. Equality and hashing are memberwise; to find the same tool in another list compare `id()`.
struct AppInfo {
    /// The catalog rule's name.
    std::string name;
    std::string displayName;
    std::string description;
    AppCategory category = AppCategory::desktop;
    /// Identifier of a symbol image, such as "terminal.fill".
    std::string iconName;
    /// How the tool is usually installed, for display.
    std::optional<std::string> installedVia;
    /// The four path lists are the rule's own, unexpanded: they may begin with "~".
    std::vector<std::string> detectPaths;
    std::vector<std::string> uninstallPaths;
    std::vector<std::string> credentialPaths;
    std::vector<std::string> residualDataPaths;
    /// True when the last scan found the tool or data that it left behind.
    bool isDetected = false;
    /// True when the last scan found leftover data without an installation.
    bool hasResidualData = false;
    bool isSelected = false;

    [[nodiscard]] const std::string& id() const noexcept { return name; }

    bool operator==(const AppInfo&) const = default;
};

} // namespace zentrill

template <>
struct std::hash<zentrill::AppInfo> {
    [[nodiscard]] std::size_t operator()(const zentrill::AppInfo& app) const;
};
