#pragma once

#include "catalog/AppInfo.h"
#include "docker/DockerAvailability.h"
#include "models/LocalModel.h"

#include <map>
#include <string>
#include <vector>

namespace zentrill {

/// By `AppInfo::name`: the paths that are there of what is not installed any more.
using RemainingPaths = std::map<std::string, std::vector<std::string>>;

/// Everything that one scan found.
struct ScanSnapshot {
    /// The list that the scan was given, with `isDetected` and `hasResidualData` as they are now.
    std::vector<AppInfo> apps;
    RemainingPaths remainingPaths;
    /// Ollama's, then HuggingFace's, then LM Studio's.
    std::vector<LocalModel> models;
    DockerAvailability docker;

    bool operator==(const ScanSnapshot&) const = default;
};

} // namespace zentrill
