#pragma once

#include "catalog/AppInfo.h"
#include "docker/DockerAvailability.h"
#include "models/LocalModel.h"

#include <map>
#include <string>
#include <vector>

namespace zentrill {

/// By `AppInfo::name`: the paths that remain of a tool that is no longer installed.
using RemainingPaths = std::map<std::string, std::vector<std::string>>;

/// By `AppInfo::name`: the first executable or bundle of a tool that exists.
using InstalledPaths = std::map<std::string, std::string>;

/// Everything that one scan found.
struct ScanSnapshot {
    /// The list that the scan was given, with `isDetected` and `hasResidualData` as they are now.
    std::vector<AppInfo> apps;
    RemainingPaths remainingPaths;
    InstalledPaths installedPaths;
    /// Ollama's, then HuggingFace's, then LM Studio's.
    std::vector<LocalModel> models;
    DockerAvailability docker;

    bool operator==(const ScanSnapshot&) const = default;
};

} // namespace zentrill
